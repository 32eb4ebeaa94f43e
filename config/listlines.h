// Lines and words of the list files. Inside this folder only.
#pragma once

#include <algorithm>
#include <charconv>
#include <string_view>

namespace listlines {

constexpr std::size_t lineLimit = 79;  // characters of a line that are read
constexpr int recordLines = 5;

inline std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos ? ""
                                           : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// Whether a text has the given form: 'x' stands for a hexadecimal digit, anything else for itself.
inline bool hasForm(std::string_view text, std::string_view form) {
    return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char f) {
        return f == 'x' ? std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos
                        : c == f;
    });
}

inline bool isDottedDecimal(std::string_view text) {
    for (int field = 0; field < 4; ++field) {
        unsigned value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || value > 255) return false;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        if (field == 3) return text.empty();
        if (!text.starts_with('.')) return false;
        text.remove_prefix(1);
    }
    return false;
}

inline bool isMacText(std::string_view text) {
    return hasForm(text, "xxxxxxxxxxxx");
}

inline bool isClientText(std::string_view text) {
    return hasForm(text, "xxxxxxxxxxxx/xx");
}

// The lines of a text, which is not copied. next() gives the first 79 characters of a line without its end;
// false when the text ended before the line did.
class TextLines {
  public:
    explicit TextLines(std::string_view text) : rest_(text) {}

    bool next(std::string_view& line) {
        const std::size_t end = rest_.find('\n');
        line = rest_.substr(0, std::min(end, lineLimit));
        rest_.remove_prefix(std::min(rest_.size(), end == std::string_view::npos ? end : end + 1));
        return end != std::string_view::npos;
    }

  private:
    std::string_view rest_;
};

}  // namespace listlines
