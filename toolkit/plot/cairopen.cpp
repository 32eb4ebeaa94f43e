#include "toolkit/plot/cairopen.h"

#include "platform/index.h"

#include <cmath>

namespace {

constexpr double fontSize = 13;

void setColour(cairo_t* cairo, unsigned colour) {
    const auto part = [colour](unsigned shift) { return static_cast<double>(colour >> shift & 0xff) / 255; };
    cairo_set_source_rgb(cairo, part(16), part(8), part(0));
}

}  // namespace

zCairoPen::zCairoPen(cairo_t* surface, const std::string& family, const zPlotLook& look)
    : cairo_(surface), look_(look) {
    cairo_select_font_face(cairo_, family.c_str(), CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo_, fontSize);
}

int zCairoPen::textWidth(std::string_view text) const {
    cairo_text_extents_t extents;
    cairo_text_extents(cairo_, std::string(text).c_str(), &extents);
    return static_cast<int>(std::ceil(extents.x_advance));
}

int zCairoPen::textHeight() const {
    cairo_font_extents_t extents;
    cairo_font_extents(cairo_, &extents);
    return static_cast<int>(std::ceil(extents.ascent + extents.descent));
}

int zCairoPen::ascent() const {
    cairo_font_extents_t extents;
    cairo_font_extents(cairo_, &extents);
    return static_cast<int>(std::ceil(extents.ascent));
}

void zCairoPen::setGround(std::span<const short> rows, int) {
    rows_.assign(rows.begin(), rows.end());
}

void zCairoPen::fill(unsigned colour, std::span<const XRectangle> areas) {
    setColour(cairo_, colour);
    for (const XRectangle& area : areas) cairo_rectangle(cairo_, area.x, area.y, area.width, area.height);
    cairo_fill(cairo_);
}

void zCairoPen::ground(std::span<const XRectangle> areas) {
    fill(look_.ground, areas);
    for (const XRectangle& area : areas)
        for (const short row : rows_)
            if (row >= area.y && row < area.y + area.height) {
                const XRectangle line{area.x, row, area.width, 1};
                fill(look_.grid, {&line, 1});
            }
}

void zCairoPen::fill(zInk ink, int line, std::span<const XRectangle> areas) {
    const unsigned colours[] = {look_.ground,
                                look_.text,
                                look_.grid,
                                look_.select,
                                look_.anyBand,
                                look_.line[asIndex(line)],
                                look_.band[asIndex(line)]};
    fill(colours[asIndex(ink)], areas);
}

void zCairoPen::write(std::span<const Text> texts) {
    setColour(cairo_, look_.text);
    for (const Text& text : texts) {
        cairo_move_to(cairo_, text.x, text.baseline);
        cairo_show_text(cairo_, std::string(text.text).c_str());
    }
}

void zCairoPen::clip(const XRectangle* area) {
    cairo_reset_clip(cairo_);
    if (!area) return;
    cairo_rectangle(cairo_, area->x, area->y, area->width, area->height);
    cairo_clip(cairo_);
}
