#include "sim/wire.h"

#include <algorithm>

namespace sim {

void putNumber(Bytes out, std::uint64_t value) {
    for (std::uint8_t& byte : out) {
        byte = static_cast<std::uint8_t>(value & 0xff);
        value >>= 8;
    }
}

std::uint64_t getNumber(ConstBytes in) {
    std::uint64_t value = 0;
    for (std::size_t i = std::min<std::size_t>(in.size(), 8); i-- > 0;) value = value << 8 | in[i];
    return value;
}

void putBytes(Bytes out, ConstBytes value) {
    const std::size_t count = std::min(out.size(), value.size());
    std::copy_n(value.begin(), count, out.begin());
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(count), out.end(), std::uint8_t{0});
}

Header readHeader(ConstBytes m) {
    const auto word = [&](std::size_t at) { return static_cast<std::uint16_t>(getNumber(m.subspan(at, 2))); };
    return {word(0), word(2), m[4], m[5], word(6), word(8), word(10), word(12), word(14)};
}

void writeHeader(const Header& h, Bytes m) {
    const auto word = [&](std::size_t at, std::uint16_t value) { putNumber(m.subspan(at, 2), value); };
    word(0, h.prim);
    word(2, h.type);
    m[4] = h.link;
    m[5] = h.unit;
    word(6, h.size);
    word(8, h.szIO);
    word(10, h.rowM);
    word(12, h.nRow);
    word(14, h.resp);
}

}  // namespace sim
