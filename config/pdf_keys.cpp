// Keys in a section's data: finding, reading and writing them.
#include "config/pdf_internal.h"
#include "model/ui_types.h"
#include "platform/index.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>

using namespace pdf;

namespace {

struct KeyPlace {
    const char* word = nullptr;   // the key
    const char* value = nullptr;  // its value's first character, null when there is no such key
};

// Which characters end a word that can be a key; these are most of what is done with a file.
constexpr auto wordEnds = [] {
    std::array<bool, 256> ends{};
    for (std::size_t c = 0; c < ends.size(); ++c)
        ends[c] = endsValue(static_cast<char>(c)) || static_cast<char>(c) == '=';
    return ends;
}();

bool endsWord(char c) {
    return wordEnds[static_cast<unsigned char>(c)];
}

const char* lineEndFrom(const char* at) {
    while (*at && *at != '\n') ++at;
    return at;
}

// Words of values are candidates, too: a value that is followed by a blank can stand for a key.
KeyPlace findKey(const char* at, std::string_view key) {
    while (*at) {
        if (*at == '#') at = lineEndFrom(at);
        if (endsWord(*at)) {
            at += *at != '\0';
            continue;
        }
        const char* word = at;
        while (!endsWord(*at)) ++at;
        const bool candidate = isBlank(*at) || *at == '=';
        if (!candidate || std::string_view(word, at) != key) continue;
        while (*at != '=' && *at != '#' && *at && !isLineEnd(*at)) ++at;
        if (*at != '=') return {};
        for (++at; isBlank(*at);) ++at;
        return {word, at};
    }
    return {};
}

const char* valueEnd(const char* at) {
    while (!endsValue(*at)) ++at;
    return at;
}

// What a value may consist of to be read back as it was written.
bool readsBack(std::string_view text) {
    return text.size() <= keyValueLimit && std::all_of(text.begin(), text.end(), [](char c) {
               return c >= '!' && c <= 'z' && c != '#' && c != '[' && c != ']';
           });
}

// The text that WriteConvert gives, checked. Empty without a value when it cannot stand in the file.
std::optional<std::string> textOf(void* source, int type, int len) {
    std::array<char, keyValueLimit + 16> text{};
    if (type == keyBytes && len > static_cast<int>(keyValueLimit / 2)) return std::nullopt;
    if (type == keyString && len > 0) {
        static_cast<char*>(source)[len - 1] = '\0';
        const std::string_view whole = static_cast<const char*>(source);
        return readsBack(whole) ? std::optional<std::string>(whole) : std::nullopt;
    }
    return std::string(text.data(), WriteConvert(source, text.data(), type, len));
}

// Whether a word of a value would from now on be found instead of a key that stands behind it. `end` is where
// the old value ends.
bool hidesKey(const char* data, const char* value, const char* end, std::string_view text) {
    while (!text.empty()) {
        const std::size_t equals = text.find('=');
        const std::string_view word = text.substr(0, equals);
        const bool candidate = equals != std::string_view::npos || isBlank(*end) || *end == '#';
        const char* first = findKey(data, word).value;
        if (candidate && !word.empty() && (!first || first > value) && findKey(end, word).value) return true;
        if (equals == std::string_view::npos) return false;
        text.remove_prefix(equals + 1);
    }
    return false;
}

// Lines of more than one piece keep their length: every piece is read as a line of its own, so a shift could
// bring a bracket into or out of a comment.
bool keepsPieces(std::string_view line, std::size_t newLength) {
    const bool pieces =
        line.size() > sectionLineLimit || (line.size() == sectionLineLimit && line.back() != '\n');
    return newLength == line.size() || (!pieces && newLength <= sectionLineLimit);
}

// 0, or the errno of the refusal.
int replaceValue(SectionHandle& handle, const char* value, std::string_view text) {
    const char* data = handle.data.c_str();
    const char* end = valueEnd(value);
    const std::string_view old(value, end);
    if (old.empty() && text.empty()) return 0;
    if (old.find_first_of("[]") != std::string_view::npos || hidesKey(data, value, end, text)) return EINVAL;

    const char* next = end;
    while (isBlank(*next)) ++next;
    if (text.empty() && !endsValue(*next)) return EINVAL;  // the next word would become the value

    std::string replacement(text);
    if (old.empty()) replacement.insert(0, 1, ' ');
    if (*end == '#') replacement += ' ';
    const char* lineStart = value;
    while (lineStart != data && lineStart[-1] != '\n') --lineStart;
    const char* lineStop = lineEndFrom(end);
    if (*lineStop) ++lineStop;
    const std::string_view line(lineStart, lineStop);
    if (!keepsPieces(line, line.size() - old.size() + replacement.size())) return EMSGSIZE;

    const std::string_view whole = handle.data.view();
    if (whole.size() - old.size() + replacement.size() >= sectionDataSize) return EFBIG;
    std::string edited(whole);
    edited.replace(asIndex(value - data), old.size(), replacement);
    handle.data = edited;
    ++handle.wflg;
    return 0;
}

// The new line of a created section: one tab more than the section, '=' at column 40 where the key allows.
std::string newLine(std::string_view key, std::string_view text, int nest) {
    constexpr std::size_t tab = 8, valueColumn = 40;
    std::string line(asIndex(nest) + 1, '\t');
    std::size_t column = line.size() * tab + key.size();
    line += key;
    do {
        line += '\t';
        column = (column / tab + 1) * tab;
    } while (column < valueColumn);
    return line.append("= ").append(text).append("\n");
}

int addLine(SectionHandle& handle, std::string_view key, std::string_view text) {
    const std::string line = newLine(key, text, handle.nest);
    const std::size_t closing = asIndex(handle.nest) + 2;  // it is loaded with the keys
    if (key.empty() || !readsBack(key) || key.find('=') != std::string_view::npos) return EINVAL;
    if (line.size() > sectionLineLimit) return EMSGSIZE;
    if (handle.data.view().size() + line.size() + closing >= sectionDataSize) return EFBIG;
    handle.data = handle.data.str() + line;
    ++handle.wflg;
    return text.empty() ? ENODATA : 0;
}

bool startsLine(const SectionHandle& handle, const char* word) {
    while (word != handle.data.c_str() && isBlank(word[-1])) --word;
    return word == handle.data.c_str() || word[-1] == '\n';
}

// 0, or the errno of the refusal.
int writeText(SectionHandle& handle, const KeyPlace& place, std::string_view key, std::string_view text) {
    if (!place.value) return addLine(handle, key, text);
    const bool created = handle.rflg & sectionCreated;
    if (created && !startsLine(handle, place.word)) return EINVAL;
    return replaceValue(handle, place.value, text);
}

std::int32_t decimal(const char* text) {
    return static_cast<std::int32_t>(std::clamp<long>(std::strtol(text, nullptr, 10),
                                                      std::numeric_limits<std::int32_t>::min(),
                                                      std::numeric_limits<std::int32_t>::max()));
}

template <class Number> void store(void* destination, Number number) {
    std::memcpy(destination, &number, sizeof number);
}

}  // namespace

char* FindKey(SectionHandle* handle, std::string_view key) {
    const char* value = findKey(handle->data.c_str(), key).value;
    return value ? handle->data.data() + (value - handle->data.c_str()) : nullptr;
}

int ReadKey(SectionHandle* handle, std::string_view key, void* destination, int type, int len) {
    handle->valueCut = false;
    if (type < keyInt8 || type > keyIp) return fail(EINVAL);
    const char* at = FindKey(handle, key);
    if (!at) return fail(ENOENT);
    if (endsValue(*at)) return 1;

    std::string text;
    while (*at >= '!' && *at <= 'z' && text.size() < keyValueLimit) text += *at++;
    handle->valueCut = !endsValue(*at);
    const auto room = asIndex(std::max(len, 0));
    switch (type) {
    case keyInt8:
        store(destination, static_cast<std::int8_t>(decimal(text.c_str())));
        break;
    case keyInt16:
        store(destination, static_cast<std::int16_t>(decimal(text.c_str())));
        break;
    case keyInt32:
    case keyLong:
        store(destination, decimal(text.c_str()));
        break;
    case keyBytes:
        atox(text, {static_cast<std::uint8_t*>(destination), room});
        break;
    case keyString: {
        if (room == 0) break;
        handle->valueCut |= text.size() > room - 1;
        auto* out = static_cast<char*>(destination);
        const std::size_t count = std::min(text.size(), room - 1);
        std::fill_n(std::copy_n(text.begin(), count, out), room - count, '\0');
        break;
    }
    default:
        store(destination, ::inet_addr(text.c_str()));
        break;
    }
    if (handle->valueCut) say("ReadKey: Value Of {} Cut\n", key);
    return 0;
}

int WriteKey(SectionHandle* handle, std::string_view key, void* source, int type, int len) {
    if (handle->dataError) return fail(handle->dataError);
    const KeyPlace place = findKey(handle->data.c_str(), key);
    const bool created = handle->rflg & sectionCreated;
    if (!place.value && !created) return fail(ENOENT);

    const std::optional<std::string> text = textOf(source, type, len);
    if (text && text->empty() && type != keyString) return fail(ENODATA);
    const int error = text ? writeText(*handle, place, key, *text) : EINVAL;
    if (error == 0) return 0;
    if (error != ENODATA) say("WriteKey: Value Of {} Not Written: {}\n", key, std::strerror(error));
    return fail(error);
}
