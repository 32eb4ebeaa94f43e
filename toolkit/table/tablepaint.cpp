#include "toolkit/table/tablepaint.h"

#include "toolkit/display/cellresources.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/library/truecolour.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
#include <algorithm>

namespace {

constexpr int sideMargin = 4;  // between a cell's edge and its text
constexpr int markGap = 4;     // between a text and its mark
constexpr std::string_view dots = "...";

const FcChar8* bytes(std::string_view text) {
    return reinterpret_cast<const FcChar8*>(text.data());
}

}  // namespace

struct zTablePaint::Tools {
    Widget canvas;
    Display* display;
    int screen;
    zCellResources resources;
    Pixel cells, labels, top, bottom;
    XftColor ink, pale;
    XftFont* font = nullptr;
    std::string pattern;
    GC gc = nullptr;
    Pixmap pixmap = None;
    XftDraw* draw = nullptr;

    explicit Tools(Widget w)
        : canvas(w), display(XtDisplay(w)), screen(DefaultScreen(display)), resources(zCellResourcesOf(w)) {
        Colormap colours = 0;
        Pixel foreground = 0, unused = 0;
        XtVaGetValues(canvas, XmNbackground, &cells, XmNforeground, &foreground, XmNcolormap, &colours,
                      nullptr);
        XtVaGetValues(XtParent(canvas), XmNbackground, &labels, nullptr);
        XmGetColors(XtScreen(canvas), colours, labels, &unused, &top, &bottom, nullptr);
        ink = colour(foreground);
        pale = colour(bottom);
    }
    ~Tools() {
        forget();
        if (gc) XFreeGC(display, gc);
    }
    void forget() {
        if (draw) XftDrawDestroy(draw);
        if (pixmap) XFreePixmap(display, pixmap);
        draw = nullptr;
        pixmap = None;
    }
    XftColor colour(Pixel pixel) const {
        const XColor value = zColourOf(canvas, pixel);
        return {pixel, {value.red, value.green, value.blue, 0xffff}};
    }
    void fill(Pixel pixel, const zRect& r) const {
        XSetForeground(display, gc, pixel);
        XFillRectangle(display, pixmap, gc, r.x, r.y, static_cast<unsigned>(r.width),
                       static_cast<unsigned>(r.height));
    }
    int width(std::string_view text) const {
        XGlyphInfo extents{};
        XftTextExtents8(display, font, bytes(text), static_cast<int>(text.size()), &extents);
        return extents.xOff;
    }
};

zTablePaint::zTablePaint(Widget canvas) : tools_(std::make_unique<Tools>(canvas)) {
    setFont({});
}

zTablePaint::~zTablePaint() = default;

void zTablePaint::setFont(const std::string& pattern) {
    Tools& t = *tools_;
    if (t.font && pattern == t.pattern) return;
    t.pattern = pattern;
    zDisplayCache& cache = zDisplayCache::of(t.display);
    t.font = pattern.empty() ? nullptr : cache.font(t.screen, pattern);
    if (!t.font) t.font = cache.font(t.screen, t.resources.font);
    if (!t.font) t.font = cache.font(t.screen, "sans");  // always matches a font
}

zFont zTablePaint::font() const {
    const FcPattern* opened = tools_->font->pattern;
    FcChar8* family = nullptr;
    zFont found;
    if (FcPatternGetString(opened, FC_FAMILY, 0, &family) == FcResultMatch)
        found.family = reinterpret_cast<const char*>(family);
    FcPatternGetDouble(opened, FC_SIZE, 0, &found.size);
    return found;
}

int zTablePaint::textWidth(std::string_view text) const {
    return tools_->width(text);
}

int zTablePaint::textHeight() const {
    return tools_->font->ascent + tools_->font->descent;
}

void zTablePaint::resize(int width, int height) {
    Tools& t = *tools_;
    t.forget();
    const Window window = XtWindow(t.canvas);
    if (!t.gc) {
        // No NoExpose event for each copy from the pixmap.
        XGCValues values{};
        values.graphics_exposures = False;
        t.gc = XCreateGC(t.display, window, GCGraphicsExposures, &values);
    }
    int depth = 0;
    XtVaGetValues(t.canvas, XmNdepth, &depth, nullptr);
    t.pixmap = XCreatePixmap(t.display, window, static_cast<unsigned>(std::max(1, width)),
                             static_cast<unsigned>(std::max(1, height)), static_cast<unsigned>(depth));
    t.draw = XftDrawCreate(t.display, t.pixmap, DefaultVisual(t.display, t.screen),
                           DefaultColormap(t.display, t.screen));
    clear({0, 0, width, height});
}

void zTablePaint::clear(const zRect& area) {
    tools_->fill(tools_->cells, area);
}

void zTablePaint::show(const zRect& r) {
    const Tools& t = *tools_;
    XCopyArea(t.display, t.pixmap, XtWindow(t.canvas), t.gc, r.x, r.y, static_cast<unsigned>(r.width),
              static_cast<unsigned>(r.height), r.x, r.y);
}

void zTablePaint::cell(const zRect& whole, const zRect& visible, std::string_view value, const Look& look) {
    const Tools& t = *tools_;
    if (visible.width <= 0 || visible.height <= 0) return;
    t.fill(look.label ? t.labels : look.selected ? t.resources.select : t.cells, visible);
    const int textEnd = text(whole, visible, value, look);
    if (look.mark != Mark::none) mark(whole, visible, textEnd, look);

    // The visible edges.
    const int right = whole.x + whole.width - 1, bottom = whole.y + whole.height - 1;
    const bool rightSeen = right < visible.x + visible.width,
               bottomSeen = bottom < visible.y + visible.height;
    const Pixel dark = look.label ? t.bottom : t.resources.grid;
    if (look.label) {
        t.fill(t.top, {visible.x, visible.y, visible.width, 1});
        if (whole.x == visible.x) t.fill(t.top, {visible.x, visible.y, 1, visible.height});
    }
    if (rightSeen) t.fill(dark, {right, visible.y, 1, visible.height});
    if (bottomSeen) t.fill(dark, {visible.x, bottom, visible.width, 1});
    if (look.active) {
        // The frame of the cell with the keyboard focus.
        t.fill(t.ink.pixel, {visible.x, visible.y, visible.width, 1});
        if (bottomSeen) t.fill(t.ink.pixel, {visible.x, bottom - 1, visible.width, 1});
        if (whole.x == visible.x) t.fill(t.ink.pixel, {visible.x, visible.y, 1, visible.height});
        if (rightSeen) t.fill(t.ink.pixel, {right - 1, visible.y, 1, visible.height});
    }
}

// Returns where the text ends.
int zTablePaint::text(const zRect& whole, const zRect& visible, std::string_view value, const Look& look) {
    const Tools& t = *tools_;
    std::string shown(value);
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    const int marked = look.mark == Mark::none ? 0 : markWidth();
    const int room = whole.width - 2 * sideMargin - marked;
    int width = t.width(shown);
    if (width > room) {
        while (!shown.empty() && t.width(shown) + t.width(dots) > room) shown.pop_back();
        shown += dots;
        width = t.width(shown);
    }
    const int spare = std::max(0, room - width);
    const int left = whole.x + sideMargin + (look.label ? spare / 2 : spare);
    if (shown.empty()) return left;
    const int baseline = whole.y + (whole.height - textHeight()) / 2 + t.font->ascent;
    const int clipped = std::min(visible.width, whole.x + whole.width - marked - visible.x);
    if (clipped <= 0) return left;
    XRectangle clip{static_cast<short>(visible.x), static_cast<short>(visible.y),
                    static_cast<unsigned short>(clipped), static_cast<unsigned short>(visible.height)};
    XftDrawSetClipRectangles(t.draw, 0, 0, &clip, 1);
    XftDrawString8(t.draw, look.greyed ? &t.pale : &t.ink, t.font, left, baseline, bytes(shown),
                   static_cast<int>(shown.size()));
    return left + width;
}

int zTablePaint::markHeight() const {
    return tools_->font->ascent * 2 / 5;
}

int zTablePaint::markWidth() const {
    return markGap + 2 * markHeight() - 1;
}

// Beside a text that ends at `left`, but always within the cell.
void zTablePaint::mark(const zRect& whole, const zRect& visible, int left, const Look& look) {
    const Tools& t = *tools_;
    const int height = markHeight();
    const int x = std::min(left, whole.x + whole.width - sideMargin - markWidth()) + markGap;
    const int y = whole.y + (whole.height - height) / 2;
    for (int line = 0; line < height; ++line) {
        const int inset = look.mark == Mark::up ? height - 1 - line : line;
        const int from = std::max(x + inset, visible.x);
        const int to = std::min(x + 2 * height - 1 - inset, visible.x + visible.width);
        if (from < to) t.fill((look.greyed ? t.pale : t.ink).pixel, {from, y + line, to - from, 1});
    }
}
