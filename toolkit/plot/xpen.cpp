#include "toolkit/plot/xpen.h"

#include "platform/index.h"
#include "toolkit/display/cellresources.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/library/truecolour.h"

#include <Xm/Xm.h>
#include <algorithm>
#include <fmt/format.h>
#include <string>
#include <utility>

namespace {

unsigned rgbOf(Widget widget, Pixel pixel) {
    const XColor value = zColourOf(widget, pixel);
    return static_cast<unsigned>(value.red >> 8 << 16 | value.green >> 8 << 8 | value.blue >> 8);
}

// The user's colour of a line, or the one it has without that.
unsigned lineColour(Widget canvas, int number, unsigned usual) {
    const std::string name = fmt::format("lineColor{}", number + 1);
    std::string text = fmt::format("#{:06x}", usual);
    Pixel pixel = 0;
    XtResource row = {name.c_str(), "LineColor", XmRPixel, sizeof(Pixel), 0, XmRString, text.data()};
    XtGetApplicationResources(canvas, &pixel, &row, 1, nullptr, 0);
    return rgbOf(canvas, pixel);
}

zPlotLook lookOf(Widget canvas) {
    Pixel ground = 0, text = 0;
    XtVaGetValues(canvas, XmNbackground, &ground, XmNforeground, &text, nullptr);
    const zCellResources resources = zCellResourcesOf(canvas);
    zPlotLook look = zPlotLookOn(rgbOf(canvas, ground), rgbOf(canvas, text), rgbOf(canvas, resources.grid),
                                 rgbOf(canvas, resources.select));
    for (int i = 0; i < zPlotLook::lines; ++i) look.setLine(i, lineColour(canvas, i, look.line[asIndex(i)]));
    return look;
}

XftFont* fontOf(Widget canvas) {
    zDisplayCache& cache = zDisplayCache::of(XtDisplay(canvas));
    const int screen = DefaultScreen(XtDisplay(canvas));
    XftFont* font = cache.font(screen, zCellResourcesOf(canvas).font);
    return font ? font : cache.font(screen, "sans");  // always matches a font
}

constexpr unsigned tileWidth = 16;

}  // namespace

zXPen::zXPen(Widget canvas)
    : canvas_(canvas), display_(XtDisplay(canvas)), look_(lookOf(canvas)), font_(fontOf(canvas)) {}

zXPen::~zXPen() {
    forget();
    for (const GC gc : {ground_, tiled_, text_, grid_, select_, anyBand_})
        if (gc) XFreeGC(display_, gc);
    for (const auto* gcs : {&lines_, &bands_})
        for (const GC gc : *gcs)
            if (gc) XFreeGC(display_, gc);
}

void zXPen::forget() {
    if (draw_) XftDrawDestroy(draw_);
    if (pixmap_) XFreePixmap(display_, pixmap_);
    if (tile_) XFreePixmap(display_, tile_);
    draw_ = nullptr;
    pixmap_ = tile_ = None;
}

// One for each colour, since changing the colour of one costs as much as what is drawn with it.
GC zXPen::makeGc(unsigned colour) const {
    XColor value{};
    value.red = static_cast<unsigned short>((colour >> 16 & 0xff) * 0x101);
    value.green = static_cast<unsigned short>((colour >> 8 & 0xff) * 0x101);
    value.blue = static_cast<unsigned short>((colour & 0xff) * 0x101);
    XAllocColor(display_, DefaultColormapOfScreen(XtScreen(canvas_)), &value);
    XGCValues values{};
    values.foreground = value.pixel;
    values.graphics_exposures = False;  // no NoExpose event for each copy from the pixmap
    return XCreateGC(display_, XtWindow(canvas_), GCForeground | GCGraphicsExposures, &values);
}

void zXPen::resize(int width, int height) {
    forget();
    if (!ground_) {
        ground_ = makeGc(look_.ground);
        tiled_ = makeGc(look_.ground);
        text_ = makeGc(look_.text);
        grid_ = makeGc(look_.grid);
        select_ = makeGc(look_.select);
        anyBand_ = makeGc(look_.anyBand);
        for (int i = 0; i < zPlotLook::lines; ++i) {
            lines_[asIndex(i)] = makeGc(look_.line[asIndex(i)]);
            bands_[asIndex(i)] = makeGc(look_.band[asIndex(i)]);
        }
        XGCValues values{};
        XGetGCValues(display_, text_, GCForeground, &values);
        const XColor text = zColourOf(canvas_, values.foreground);
        ink_ = {text.pixel, {text.red, text.green, text.blue, 0xffff}};
    }
    int depth = 0;
    XtVaGetValues(canvas_, XmNdepth, &depth, nullptr);
    pixmap_ = XCreatePixmap(display_, XtWindow(canvas_), static_cast<unsigned>(std::max(1, width)),
                            static_cast<unsigned>(std::max(1, height)), static_cast<unsigned>(depth));
    tile_ = XCreatePixmap(display_, XtWindow(canvas_), tileWidth, static_cast<unsigned>(std::max(1, height)),
                          static_cast<unsigned>(depth));
    draw_ = XftDrawCreate(display_, pixmap_, DefaultVisualOfScreen(XtScreen(canvas_)),
                          DefaultColormapOfScreen(XtScreen(canvas_)));
    // Glyphs are sent when they are drawn first: not in a tick.
    constexpr std::string_view ofTicks = "0123456789.:unknow";
    write(std::array{Text{0, ascent(), ofTicks}});
}

void zXPen::setGround(std::span<const short> rows, int height) {
    XFillRectangle(display_, tile_, ground_, 0, 0, tileWidth, static_cast<unsigned>(std::max(1, height)));
    for (const short row : rows) XFillRectangle(display_, tile_, grid_, 0, row, tileWidth, 1);
    XSetTile(display_, tiled_, tile_);
    XSetFillStyle(display_, tiled_, FillTiled);
}

void zXPen::fill(GC gc, std::span<const XRectangle> areas) {
    sent_ += zXBytes::fill + areas.size() * zXBytes::area;
    XFillRectangles(display_, pixmap_, gc, const_cast<XRectangle*>(areas.data()),
                    static_cast<int>(areas.size()));
}

void zXPen::ground(std::span<const XRectangle> areas) {
    fill(tiled_, areas);
}

void zXPen::fill(zInk ink, int line, std::span<const XRectangle> areas) {
    const GC gcs[] = {ground_, text_, grid_, select_, anyBand_, lines_[asIndex(line)], bands_[asIndex(line)]};
    fill(gcs[asIndex(ink)], areas);
}

int zXPen::textWidth(std::string_view text) const {
    int width = 0;
    for (const char c : text) width += glyphOf(c).advance;
    return width;
}

// Asking the font each time would be the larger part of writing a number.
const zXPen::Glyph& zXPen::glyphOf(char c) const {
    const char shown = c >= ' ' && c <= '~' ? c : '?';
    std::optional<Glyph>& known = known_[asIndex(shown)];
    if (!known) {
        const FT_UInt number = XftCharIndex(display_, font_, static_cast<FcChar32>(shown));
        XGlyphInfo extents{};
        XftGlyphExtents(display_, font_, &number, 1, &extents);
        known = {number, extents.xOff};
    }
    return *known;
}

int zXPen::textHeight() const {
    return font_->ascent + font_->descent;
}

int zXPen::ascent() const {
    return font_->ascent;
}

// All of them in one request.
void zXPen::write(std::span<const Text> texts) {
    glyphs_.clear();
    sent_ += zXBytes::writing;
    for (const Text& text : texts) {
        sent_ += zXBytes::text(text.text.size());
        int x = text.x;
        for (const char c : text.text) {
            const Glyph& glyph = glyphOf(c);
            glyphs_.push_back(
                {font_, glyph.number, static_cast<short>(x), static_cast<short>(text.baseline)});
            x += glyph.advance;
        }
    }
    if (!glyphs_.empty())
        XftDrawGlyphFontSpec(draw_, &ink_, glyphs_.data(), static_cast<int>(glyphs_.size()));
}

void zXPen::clip(const XRectangle* area) {
    if (area)
        XftDrawSetClipRectangles(draw_, 0, 0, area, 1);
    else
        XftDrawSetClip(draw_, nullptr);
}

void zXPen::scroll(const XRectangle& area, int pixels) {
    sent_ += zXBytes::copy;
    XCopyArea(display_, pixmap_, pixmap_, ground_, area.x + pixels, area.y,
              static_cast<unsigned>(area.width - pixels), area.height, area.x, area.y);
}

void zXPen::show(const XRectangle& area) {
    sent_ += zXBytes::copy;
    XCopyArea(display_, pixmap_, XtWindow(canvas_), ground_, area.x, area.y, area.width, area.height, area.x,
              area.y);
}

void zXPen::markWindow(const XRectangle& area) {
    sent_ += zXBytes::fill + zXBytes::area;
    XFillRectangle(display_, XtWindow(canvas_), text_, area.x, area.y, area.width, area.height);
}

std::size_t zXPen::takeSent() {
    return std::exchange(sent_, 0);
}
