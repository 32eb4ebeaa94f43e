// What a plot is drawn with: on the screen, or into a file. Inside the toolkit only.
#pragma once

#include "toolkit/plot/plotlook.h"

#include <X11/Xlib.h>
#include <cstddef>
#include <span>
#include <string_view>

// Bytes of requests to an X server.
struct zXBytes {
    static constexpr std::size_t copy = 28, fill = 12, area = 8, writing = 28;
    static constexpr std::size_t text(std::size_t characters) { return 8 + (characters + 3) / 4 * 4; }
};

enum class zInk { ground, text, grid, select, anyBand, line, band };

class zPlotPen {
  public:
    virtual ~zPlotPen() = default;

    // In pixels, of the font.
    virtual int textWidth(std::string_view text) const = 0;
    virtual int textHeight() const = 0;
    virtual int ascent() const = 0;

    // The ground has lines over its whole width, one pixel high, in these rows; it has this height.
    virtual void setGround(std::span<const short> rows, int height) = 0;
    virtual void ground(std::span<const XRectangle> areas) = 0;

    // `line`: the number of a line or band.
    virtual void fill(zInk ink, int line, std::span<const XRectangle> areas) = 0;

    struct Text {
        int x, baseline;
        std::string_view text;
    };
    virtual void write(std::span<const Text> texts) = 0;
    void write(const Text& text) { write(std::span(&text, 1)); }

    // Until the next call nothing is written outside; null: no limit.
    virtual void clip(const XRectangle* area) = 0;
};
