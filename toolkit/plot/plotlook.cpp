#include "toolkit/plot/plotlook.h"

#include "platform/index.h"

namespace {

constexpr std::array<unsigned, zPlotLook::lines> onLight{0x0055a8, 0xd98200, 0x00664d, 0xe0609c,
                                                         0x8c2d04, 0x2fa3e0, 0x4b2a7b, 0x7a9a01},
    onDark{0x56b4e9, 0xd98200, 0x00b386, 0xf5a3c7, 0xffb07a, 0x3d8fd6, 0xcbb2f0, 0x8fae1b};
constexpr int bandParts = 35;     // hundredths of the line's colour in that of its band
constexpr int anyBandParts = 13;  // hundredths of the text's colour in the shared band

// Columns: on, off, on, off. Shorter ones would be more to draw in each tick.
constexpr int dashes[][4] = {{1000, 0, 0, 0}, {14, 6, 0, 0}, {5, 5, 0, 0}, {16, 5, 5, 5}};
// Two lines of each, one darker and one lighter.
constexpr int dashOf[zPlotLook::lines] = {0, 0, 1, 1, 2, 2, 3, 3};

unsigned mixed(unsigned ground, unsigned other, int parts) {
    unsigned result = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const auto of = [shift](unsigned colour) { return static_cast<int>(colour >> shift & 0xff); };
        result |= static_cast<unsigned>((of(ground) * (100 - parts) + of(other) * parts) / 100) << shift;
    }
    return result;
}

unsigned brightness(unsigned colour) {
    return (colour >> 16 & 0xff) * 3 + (colour >> 8 & 0xff) * 6 + (colour & 0xff);
}

}  // namespace

void zPlotLook::setLine(int number, unsigned colour) {
    line[asIndex(number)] = colour;
    band[asIndex(number)] = mixed(ground, colour, bandParts);
}

zPlotLook zPlotLookOn(unsigned ground, unsigned text, unsigned grid, unsigned select) {
    zPlotLook look{ground, text, grid, select, {}, {}, mixed(ground, text, anyBandParts)};
    const auto& colours = brightness(text) > brightness(ground) ? onDark : onLight;
    for (int i = 0; i < zPlotLook::lines; ++i) look.setLine(i, colours[asIndex(i)]);
    return look;
}

zPlotLook zPlotLookOnPaper() {
    return zPlotLookOn(0xffffff, 0x000000, 0xd0d0d0, 0xffffff);
}

zDash zDashAt(int line, std::int64_t column) {
    const auto& parts = dashes[dashOf[line]];
    zDash dash{false, -static_cast<int>(column % (parts[0] + parts[1] + parts[2] + parts[3]))};
    for (const int part : parts) {
        dash.drawn = !dash.drawn;
        dash.columns += part;
        if (dash.columns > 0) break;
    }
    return dash;
}
