// What the files of the section engine share.
#pragma once

#include "config/pdf_io.h"

#include <cerrno>
#include <cstdio>
#include <fmt/format.h>
#include <utility>

namespace pdf {

constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// A carriage return in front of the line end belongs to it.
constexpr bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// The characters that end a value or a word; the zero ends the data.
constexpr bool endsValue(char c) {
    return isBlank(c) || isLineEnd(c) || c == '#' || c == '\0';
}

// The first '[' or ']' from a position on, or npos when the line ends or a comment starts before one.
inline std::size_t nextBracket(std::string_view line, std::size_t from) {
    for (std::size_t at = from; at < line.size(); ++at) {
        const char c = line[at];
        if (c == '#') break;
        if (c == '[' || c == ']') return at;
    }
    return std::string_view::npos;
}

// Prints one of the engine's lines and keeps errno.
template <class... Args> void say(fmt::format_string<Args...> text, Args&&... args) {
    const int error = errno;
    const std::string line = fmt::format(text, std::forward<Args>(args)...);
    engineOutput ? engineOutput(line) : static_cast<void>(std::fputs(line.c_str(), stdout));
    errno = error;
}

// Sets errno and returns -1.
inline int fail(int error) {
    errno = error;
    return -1;
}

// Appends to the copy. False, and ioError set, when that failed now or anything failed before.
bool put(SectionHandle& handle, std::string_view text);

// Reads and copies lines until the path of the scan is `path`, and gives the position in linebuf behind the
// bracket that did it. False at the end of the file, or with ioError.
bool scanTo(SectionHandle& handle, std::string_view path, std::size_t& behind);

// The same with the index of a text, which is filled if it is not.
bool findInText(SectionHandle& handle, std::string_view path);

// Makes the copy beside the open file. 0, or -1 and errno after a printed line.
int startCopy(SectionHandle& handle);

// Closes and removes the copy, if there is one.
void dropCopy(SectionHandle& handle);

// Writes what follows in the file and puts the copy in its place, or edits the text. 0, or -1 and errno; the
// copy is gone then.
int commit(SectionHandle& handle);

}  // namespace pdf
