#include "toolkit/display/displaycache.h"

#include "toolkit/library/rendertable.h"

#include <stdexcept>
#include <utility>
#include <vector>

namespace {

// A process has one display, tests may have several in succession.
std::vector<std::pair<Display*, zDisplayCache*>> caches;

}  // namespace

zDisplayCache::zDisplayCache(Display* display) : display_(display), alarms_(display) {
    caches.emplace_back(display, this);
}

zDisplayCache::~zDisplayCache() {
    std::erase(caches, std::pair(display_, this));
    for (const auto& [name, font] : fonts_)
        if (font) XftFontClose(display_, font);
    for (const auto& [shown, pixmap] : pixmaps_)
        if (pixmap) XFreePixmap(display_, pixmap);
    for (const auto& [shape, cursor] : cursors_) XFreeCursor(display_, cursor);
}

zDisplayCache& zDisplayCache::of(Display* display) {
    for (const auto& [of, store] : caches)
        if (of == display) return *store;
    throw std::logic_error("this display is not open");
}

Cursor zDisplayCache::cursor(int shape) {
    Cursor& cursor = cursors_[shape];
    if (!cursor) cursor = XCreateFontCursor(display_, static_cast<unsigned>(shape));
    return cursor;
}

XmRenderTable zDisplayCache::renderTable(Widget widget, const std::string& name) {
    XmRenderTable& table = renderTables_[name];
    while (XtParent(widget)) widget = XtParent(widget);
    if (!table) table = zConvertRenderTable(widget, name);
    return table;
}

XftFont* zDisplayCache::font(int screen, const std::string& name) {
    XftFont*& font = fonts_[name];
    if (!font) font = XftFontOpenName(display_, screen, name.c_str());
    return font;
}
