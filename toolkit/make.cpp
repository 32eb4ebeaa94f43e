#include "toolkit/make.h"

#include <algorithm>
#include <fmt/core.h>

zPlaced::zPlaced(const zRect& place) {
    set(XmNx, place.x);
    set(XmNy, place.y);
    set(XmNwidth, place.width);
    set(XmNheight, place.height);
}

std::string zWidgetName(const zControlRow& row) {
    return row.id >= 0 ? fmt::format("id{}", row.id) : row.name ? row.name : "unnamed";
}

Widget zMake(WidgetClass kind, Widget board, const zControlRow& row, zPlaced& place) {
    return XtCreateManagedWidget(zWidgetName(row).c_str(), kind, board, place.args.data(), place.count());
}

void zKeepPlace(Widget widget, const zRect& place) {
    XtVaSetValues(widget, XmNx, place.x, XmNy, place.y, XmNwidth, place.width, XmNheight, place.height,
                  nullptr);
}

Pixel zBackground(Widget widget) {
    Pixel background = 0;
    XtVaGetValues(widget, XmNbackground, &background, nullptr);
    return background;
}

Dimension zCentredMargin(Widget field, int height) {
    XmRenderTable table = nullptr;
    Dimension highlight = 0, shadow = 0;
    XtVaGetValues(field, XmNrenderTable, &table, XmNhighlightThickness, &highlight, XmNshadowThickness,
                  &shadow, nullptr);
    const zXmText sample("Ag");
    const int spare = height - 2 * (highlight + shadow) - XmStringHeight(table, sample.get());
    return static_cast<Dimension>(std::max(0, spare / 2));
}
