#include "toolkit/controls/mask.h"

#include "platform/index.h"

#include <algorithm>
#include <charconv>

namespace {

std::string_view withoutBlanks(std::string_view typed) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = typed.find_first_not_of(blanks);
    if (typed.size() < 2 || first == typed.npos) return typed;
    return typed.substr(first, typed.find_last_not_of(blanks) - first + 1);
}

std::size_t number(std::string_view text) {
    std::size_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

bool has(const std::bitset<256>& set, char c) {
    return set[static_cast<unsigned char>(c)];
}

zPicture::Edit full() {
    return {.refusal = zPicture::Refusal::full};
}

zPicture::Edit misfit(char c) {
    return {.refusal = zPicture::Refusal::character, .misfit = c};
}

// The characters of a bracket expression. `at` is the position after '[' and is moved to the one after ']'.
std::bitset<256> characters(std::string_view notation, std::size_t& at) {
    const auto next = [&] { return static_cast<unsigned char>(notation[notation[at] == '\\' ? ++at : at]); };
    std::bitset<256> set;
    for (; notation[at] != ']'; ++at) {
        const unsigned first = next();
        unsigned last = first;
        if (notation[at + 1] == '-' && notation[at + 2] != ']') {
            at += 2;
            last = next();
        }
        for (unsigned c = first; c <= last; ++c) set.set(c);
    }
    ++at;
    return set;
}

}  // namespace

zPicture::zPicture(std::string_view notation) {
    for (std::size_t at = 0; at < notation.size();) {
        switch (notation[at]) {
        case '\'':
            elements_.push_back({.fixed = notation[at + 1]});
            fixed_.set(static_cast<unsigned char>(notation[at + 1]));
            at += 3;
            break;
        case '(': {
            const auto close = notation.find(')', at);
            elements_.back().most = number(notation.substr(at + 1, close - at - 1));
            address_ = false;
            at = close + 1;
            break;
        }
        case '#': {
            const std::size_t after = std::min(notation.find_first_not_of('#', at), notation.size());
            std::size_t begin = 0;
            elements_.push_back({.set = characters("0-9]", begin), .most = after - at});
            address_ = false;
            at = after;
            break;
        }
        default:
            elements_.push_back({.set = characters(notation, ++at)});
        }
    }
    for (std::size_t i = 0; i < elements_.size(); ++i)
        if (!elements_[i].fixed) places_.push_back(i);
}

zPicture::Edit zPicture::edit(const std::string& text, std::size_t start, std::size_t end,
                              std::string_view typed, std::size_t caret) const {
    end = std::min(end, text.size());
    start = std::min(start, end);
    // At a fixed character, Backspace moves the caret before it, Delete after it.
    const bool forwards = typed.empty() && caret == start;
    return address_ ? editAddress(text, start, end, withoutBlanks(typed), forwards)
                    : editRuns(text, start, end, withoutBlanks(typed), forwards);
}

// Addresses. Element i is at position i of the text.

std::size_t zPicture::placesBefore(std::size_t position) const {
    return asIndex(std::lower_bound(places_.begin(), places_.end(), position) - places_.begin());
}

std::size_t zPicture::positionOf(std::size_t place) const {
    return place < places_.size() ? places_[place] : elements_.size();
}

// The first of two places between fixed characters.
bool zPicture::opensPair(std::size_t place) const {
    const std::size_t at = places_[place];
    return (at == 0 || elements_[at - 1].fixed) && at + 1 < elements_.size() && !elements_[at + 1].fixed &&
           (at + 2 == elements_.size() || elements_[at + 2].fixed);
}

std::string zPicture::format(std::string_view value) const {
    if (!address_ || value.empty()) return std::string(value);
    std::string text;
    for (const Element& element : elements_) {
        if (!element.fixed && value.empty()) break;
        text += element.fixed ? element.fixed : value.front();
        if (!element.fixed) value.remove_prefix(1);
    }
    return text;
}

std::string zPicture::bare(std::string_view shown) const {
    if (!address_) return std::string(shown);
    std::string value;
    for (std::size_t i = 0; i < std::min(shown.size(), elements_.size()); ++i)
        if (!elements_[i].fixed) value += shown[i];
    return value;
}

zPicture::Edit zPicture::editAddress(const std::string& text, std::size_t start, std::size_t end,
                                     std::string_view typed, bool forwards) const {
    struct Digit {
        char c;
        bool misfit;  // was at a place that does not allow it
    };
    const std::string standing = bare(text);
    std::vector<Digit> digits;
    for (std::size_t place = 0; place < standing.size(); ++place)
        digits.push_back({standing[place], !has(elements_[places_[place]].set, standing[place])});

    std::size_t at = placesBefore(start);
    const std::size_t behind = std::min(placesBefore(end), digits.size());
    at = std::min(at, behind);
    if (typed.empty() && at == behind) return Edit{text, forwards ? end : start};

    const bool overwrite = start == end && digits.size() == places_.size();
    digits.erase(digits.begin() + static_cast<std::ptrdiff_t>(at),
                 digits.begin() + static_cast<std::ptrdiff_t>(behind));
    std::size_t taken = 0;
    bool padded = false;
    for (const char c : typed) {
        if (isFixed(c)) {
            const bool single = at > 0 && at == digits.size() && at + 1 < places_.size() && opensPair(at - 1);
            if (!single) continue;
            if (!has(elements_[places_[at - 1]].set, '0')) return misfit(c);
            digits.insert(digits.begin() + static_cast<std::ptrdiff_t>(at) - 1, {'0', false});
            ++at;
            ++taken;
            padded = true;
            continue;
        }
        if (at == places_.size()) return full();
        if (overwrite && at < digits.size())
            digits[at] = {c, false};
        else
            digits.insert(digits.begin() + static_cast<std::ptrdiff_t>(at), {c, false});
        ++at;
        ++taken;
    }
    if (!typed.empty() && taken == 0) {
        if (start != end) return misfit(typed.front());
        const bool before = start < elements_.size() && elements_[start].fixed && start < text.size();
        return Edit{text, start + before};  // a fixed character, which is there already
    }
    if (digits.size() > places_.size()) digits.resize(places_.size());

    std::string value;
    for (std::size_t place = 0; place < digits.size(); ++place) {
        if (!digits[place].misfit && !has(elements_[places_[place]].set, digits[place].c))
            return misfit(digits[place].c);
        value += digits[place].c;
    }
    return Edit{.text = format(value), .caret = value.empty() ? 0 : positionOf(at), .padded = padded};
}

// Pictures with runs. A text is represented by its runs; each but the first, even an empty one, has its fixed
// character before it.

zPicture::Runs zPicture::split(std::string_view text) const {
    Runs runs(1);
    for (const char c : text) {
        if (isFixed(c) && runs.size() < places_.size())
            runs.emplace_back();
        else
            runs.back() += c;
    }
    return runs;
}

zPicture::Edit zPicture::joined(const Runs& runs, Caret caret) const {
    Edit edit{{}, 0};
    for (std::size_t run = 0; run < runs.size(); ++run) {
        if (run > 0) edit.text += elements_[places_[run] - 1].fixed;
        if (run == caret.run) edit.caret = edit.text.size() + caret.offset;
        edit.text += runs[run];
    }
    return edit;
}

zPicture::Caret zPicture::locate(const Runs& runs, std::size_t position) const {
    std::size_t run = 0;
    while (run + 1 < runs.size() && position > runs[run].size()) position -= runs[run++].size() + 1;
    return {run, position};
}

zPicture::Edit zPicture::editRuns(const std::string& text, std::size_t start, std::size_t end,
                                  std::string_view typed, bool forwards) const {
    Runs runs = split(text);
    Caret at = locate(runs, start);
    const Caret behind = locate(runs, end);
    const bool onlyFixed = end == start + 1 && at.run != behind.run;

    for (std::size_t run = at.run; run <= behind.run; ++run) {
        const std::size_t from = run == at.run ? at.offset : 0;
        const std::size_t to = run == behind.run ? behind.offset : runs[run].size();
        runs[run].erase(from, to - from);
    }
    if (onlyFixed && forwards) at = behind;

    bool taken = false;
    for (const char c : typed) {
        const Element* element = &elements_[places_[at.run]];
        const bool last = at.run + 1 == places_.size();
        if (isFixed(c) && !has(element->set, c)) {
            if (runs[at.run].empty()) continue;  // there already
            if (last) continue;
            ++at.run;
            at.offset = 0;
            if (at.run == runs.size()) runs.emplace_back();
            taken = true;
            continue;
        }
        if (at.offset >= element->most && !last) {
            ++at.run;
            at.offset = 0;
            if (at.run == runs.size()) runs.emplace_back();
            element = &elements_[places_[at.run]];
        }
        if (!has(element->set, c)) return misfit(c);
        if (runs[at.run].size() >= element->most) return full();
        runs[at.run].insert(at.offset++, 1, c);
        taken = true;
    }
    if (!typed.empty() && !taken && start != end) return misfit(typed.front());

    // When a run has just become full, the fixed character after it is inserted.
    const bool typedToEnd = taken && at.run + 1 == runs.size() && at.offset == runs[at.run].size();
    if (typedToEnd && runs.size() < places_.size() && at.offset >= elements_[places_[at.run]].most) {
        runs.emplace_back();
        at = {at.run + 1, 0};
    }
    while (runs.size() > at.run + 1 && runs.back().empty()) runs.pop_back();
    return joined(runs, at);
}

std::string zPicture::completed(const std::string& text, bool padded) const {
    if (places_.size() == 1 || (address_ && text.empty())) return text;
    if (address_) {
        std::string value = bare(text);
        if (padded && value.size() + 1 == places_.size() && opensPair(value.size() - 1))
            value.insert(value.size() - 1, 1, '0');
        value.resize(places_.size(), '0');
        return format(value);
    }
    Runs runs = split(text);
    runs.resize(places_.size());
    for (std::string& run : runs)
        if (run.empty()) run += '0';
    return joined(runs, {0, 0}).text;
}
