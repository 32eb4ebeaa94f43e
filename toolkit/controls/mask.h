// Pictures: what can be typed into a masked field.
//
// Notation: a bracket expression stands for one character from the listed ranges (a backslash takes the next
// character as it is), '#' for a digit, a character in single quotes is a fixed character that the field
// supplies, and "(3)" after an element stands for up to that many of it. Neighbouring '#' are one such run:
// "####" takes up to four digits.
//
// A picture whose places all take exactly one character describes an address: it has always the same length,
// and characters move up when one before them goes. In a picture with runs what was typed stays in its run.
// Every edit that is accepted turns a prefix of the picture into a prefix of the picture.
#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class zPicture {
  public:
    // The notation must be right: it is a constant of the program.
    explicit zPicture(std::string_view notation);

    struct Edit {
        std::string text;
        std::size_t caret;  // position in the text
    };

    // What becomes of a field when `typed` replaces the characters from `start` to before `end`; none when
    // the picture does not allow it. `caret` is where the caret was. Positions are within the text. Blanks
    // around a pasted text and fixed characters in it are skipped; of one that is too long the beginning is
    // taken. Characters of the text that never fitted are left in peace.
    std::optional<Edit> edit(const std::string& text, std::size_t start, std::size_t end,
                             std::string_view typed, std::size_t caret) const;

    // An address picture: the value between its fixed characters, at most the picture's length. Other
    // pictures: the value as it is.
    std::string format(std::string_view bare) const;

    // The value without the fixed characters of an address picture; other pictures keep them.
    std::string bare(std::string_view shown) const;

    // With zeros for what lacks: missing digits of an address that was begun, empty runs between fixed
    // characters. A picture of a single run lacks nothing.
    std::string completed(const std::string& text) const;

    bool isAddress() const { return address_; }

  private:
    using Set = std::bitset<256>;
    struct Element {
        char fixed = 0;  // 0: a place for characters of the set
        Set set = {};
        std::size_t most = 1;
    };
    struct Caret {
        std::size_t run, offset;
    };
    using Runs = std::vector<std::string>;

    std::optional<Edit> editAddress(const std::string&, std::size_t, std::size_t, std::string_view,
                                    bool) const;
    std::optional<Edit> editRuns(const std::string&, std::size_t, std::size_t, std::string_view, bool) const;
    Runs split(std::string_view text) const;
    Edit joined(const Runs& runs, Caret caret) const;
    Caret locate(const Runs& runs, std::size_t position) const;
    bool isFixed(char c) const { return fixed_[static_cast<unsigned char>(c)]; }
    std::size_t positionOf(std::size_t place) const;
    std::size_t placesBefore(std::size_t position) const;

    std::vector<Element> elements_;
    std::vector<std::size_t> places_;  // of the elements those that are not fixed
    Set fixed_;
    bool address_ = true;
};
