// The widget of a layout row: its resources, name, creation and geometry. Inside the toolkit only.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/xmtext.h"

#include <Xm/Xm.h>
#include <string>
#include <vector>

// Resources of a widget that is about to be created.
struct zResources {
    std::vector<Arg> args;

    zResources() = default;
    explicit zResources(const zRect& place);  // its geometry in pixels
    zResources& set(const char* resource, XtArgVal value) {
        args.push_back({const_cast<char*>(resource), value});
        return *this;
    }
    zResources& set(const char* resource, const zXmText& text) {
        return set(resource, reinterpret_cast<XtArgVal>(text.get()));
    }
    // The font of a bulletin board's children.
    zResources& setFonts(XmRenderTable font);
    Cardinal count() const { return static_cast<Cardinal>(args.size()); }
};

std::string zWidgetName(const zControlRow& row);

// Creates and manages the widget of a row.
Widget zMakeWidget(WidgetClass kind, Widget board, const zControlRow& row, zResources& resources);

// Sets the geometry from the layout again on a widget that has computed a size of its own.
void zSetGeometry(Widget widget, const zRect& place);

constexpr int zBarThickness = 15;  // of scroll bars beside the usual font, as in the library's lists

// Gives the scroll bars of a scrolled list or text the thickness for its board's font.
void zGrowScrollBars(Widget scrolled, Widget board);

// Whether this place on its board is the widget's.
bool zWidgetHas(Widget widget, int x, int y);

Pixel zBackground(Widget widget);

int zTextHeight(Widget labelOrField);  // of a line, in pixels

// The top margin that centres a line of text in a field of this height.
Dimension zCentredMargin(Widget field, int height);
