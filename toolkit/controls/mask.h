// Pictures: what can be typed into a masked field.
//
// Notation: a bracket expression stands for one character from the listed ranges (a backslash quotes the next
// character); followed by "(3)" it is a run of up to three such characters. "####" is a run of up to four
// digits. A character in single quotes is a fixed character, which the field inserts by itself.
//
// A picture without runs describes an address. It has a fixed length; when a character is deleted, the ones
// after it move up. A fixed character that is typed behind the single digit of a pair, at the end of the
// text, puts a 0 before that digit. In a picture with runs characters stay in their run. A text that matches
// the beginning of the picture still does so after any accepted edit.
#pragma once

#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class zPicture {
  public:
    // The notation is not checked: it is a constant of the program.
    explicit zPicture(std::string_view notation);

    enum class Refusal {
        none,
        character,  // one that is typed, or moves to another place, does not fit there
        full        // there is no room
    };
    struct Edit {
        std::string text = {};
        std::size_t caret = 0;  // position in the text
        Refusal refusal = Refusal::none;
        char misfit = 0;      // the character that was refused
        bool padded = false;  // a single digit got its 0 from a fixed character that was typed

        explicit operator bool() const { return refusal == Refusal::none; }
    };

    // The field after `typed` has replaced the characters from `start` up to, but not including, `end`; false
    // if the picture does not allow it. `caret` is the caret's position before. Leading and trailing blanks
    // of a pasted text and fixed characters in it are skipped. Old characters that do not match are kept.
    Edit edit(const std::string& text, std::size_t start, std::size_t end, std::string_view typed,
              std::size_t caret) const;

    // Inserts the fixed characters of an address picture into a bare value and cuts it to the picture's
    // length. Other pictures return the value unchanged.
    std::string format(std::string_view bare) const;

    // Removes the fixed characters of an address picture. Other pictures return the text unchanged.
    std::string bare(std::string_view shown) const;

    // Fills missing digits of an address that is not empty, and empty runs, with zeros. A picture with a
    // single run is returned unchanged. `padded`: digits before got their 0 from typed fixed characters, so
    // that a single digit of the last pair has its 0 before it, too.
    std::string completed(const std::string& text, bool padded = false) const;

    bool isAddress() const { return address_; }

  private:
    using Set = std::bitset<256>;
    struct Element {
        char fixed = 0;  // 0: a place for up to `most` characters of the set
        Set set = {};
        std::size_t most = 1;
    };
    struct Caret {
        std::size_t run, offset;
    };
    using Runs = std::vector<std::string>;

    Edit editAddress(const std::string&, std::size_t, std::size_t, std::string_view, bool) const;
    Edit editRuns(const std::string&, std::size_t, std::size_t, std::string_view, bool) const;
    Runs split(std::string_view text) const;
    Edit joined(const Runs& runs, Caret caret) const;
    Caret locate(const Runs& runs, std::size_t position) const;
    bool isFixed(char c) const { return fixed_[static_cast<unsigned char>(c)]; }
    std::size_t positionOf(std::size_t place) const;
    std::size_t placesBefore(std::size_t position) const;
    bool opensPair(std::size_t place) const;

    std::vector<Element> elements_;
    std::vector<std::size_t> places_;  // indices of the elements that are not fixed
    Set fixed_;
    bool address_ = true;
};
