// A NUL-terminated text in a field of N bytes: at most N - 1 characters, the rest zero. Longer text is cut.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

template <std::size_t N> class FixedText {
  public:
    static constexpr std::size_t size = N;

    FixedText() = default;
    FixedText(std::string_view text) { *this = text; }

    FixedText& operator=(std::string_view text) {
        text = text.substr(0, std::min(N - 1, text.find('\0')));
        bytes_.fill('\0');
        std::copy(text.begin(), text.end(), bytes_.begin());
        return *this;
    }

    std::string_view view() const { return bytes_.data(); }
    std::string str() const { return bytes_.data(); }
    const char* c_str() const { return bytes_.data(); }
    bool empty() const { return bytes_[0] == '\0'; }
    bool operator==(const FixedText&) const = default;

    // The field itself. Writers must leave the last byte zero.
    char* data() { return bytes_.data(); }

  private:
    std::array<char, N> bytes_{};
};
