// Values as text and back.
#include "config/pdf_internal.h"

#include "model/ui_types.h"

#include <algorithm>
#include <cstring>

namespace {

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

template <class Number> char* writeNumber(const void* source, char* destination) {
    Number number{};
    std::memcpy(&number, source, sizeof number);
    return fmt::format_to(destination, "{}", static_cast<int>(number));
}

}  // namespace

int atox(std::string_view text, std::span<std::uint8_t> destination) {
    std::size_t count = 0;
    for (; count < destination.size() && 2 * count + 1 < text.size(); ++count) {
        const char high = text[2 * count], low = text[2 * count + 1];
        if (!isHexDigit(high) || !isHexDigit(low)) break;
        destination[count] = static_cast<std::uint8_t>((atox(high) << 4) + atox(low));
    }
    return static_cast<int>(count);
}

char* WriteConvert(void* source, char* destination, int type, int len) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    switch (type) {
    case keyInt8:
        return writeNumber<std::int8_t>(source, destination);
    case keyInt16:
        return writeNumber<std::int16_t>(source, destination);
    case keyInt32:
    case keyLong:
        return writeNumber<std::int32_t>(source, destination);
    case keyBytes:
        for (int i = 0; i < len; ++i) destination = fmt::format_to(destination, "{:02x}", bytes[i]);
        return destination;
    case keyString: {
        if (len <= 0) return destination;
        auto* text = static_cast<char*>(source);
        text[len - 1] = '\0';
        return std::copy_n(text, std::strlen(text), destination);
    }
    case keyIp:
        return fmt::format_to(destination, "{}.{}.{}.{}", bytes[0], bytes[1], bytes[2], bytes[3]);
    default:
        return destination;
    }
}
