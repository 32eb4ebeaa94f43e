// How controls make their widgets. Inside the toolkit only.
#pragma once

#include "toolkit/layout.h"
#include "toolkit/xmtext.h"

#include <Xm/Xm.h>
#include <string>
#include <vector>

// Resources of a widget to be made; begins with its place in pixels.
struct zPlaced {
    std::vector<Arg> args;

    explicit zPlaced(const zRect& place);
    zPlaced& set(const char* resource, XtArgVal value) {
        args.push_back({const_cast<char*>(resource), value});
        return *this;
    }
    zPlaced& set(const char* resource, const zXmText& text) {
        return set(resource, reinterpret_cast<XtArgVal>(text.get()));
    }
    Cardinal count() const { return static_cast<Cardinal>(args.size()); }
};

std::string zWidgetName(const zControlRow& row);

// Makes and manages it.
Widget zMake(WidgetClass kind, Widget board, const zControlRow& row, zPlaced& place);

// Gives a widget that computed a size of its own the layout's again.
void zKeepPlace(Widget widget, const zRect& place);

// The colour behind a board's controls.
Pixel zBackground(Widget widget);

// The top margin that centres a line of text in a field of this height.
Dimension zCentredMargin(Widget field, int height);
