#include "toolkit/controls/rowwidget.h"

#include "toolkit/controls/dialogunits.h"

#include <algorithm>
#include <fmt/core.h>

zResources::zResources(const zRect& place) {
    set(XmNx, place.x);
    set(XmNy, place.y);
    set(XmNwidth, place.width);
    set(XmNheight, place.height);
}

zResources& zResources::setFonts(XmRenderTable font) {
    for (const char* resource : {XmNlabelRenderTable, XmNbuttonRenderTable, XmNtextRenderTable})
        set(resource, reinterpret_cast<XtArgVal>(font));
    return *this;
}

std::string zWidgetName(const zControlRow& row) {
    return row.id >= 0 ? fmt::format("id{}", row.id) : row.name ? row.name : "unnamed";
}

Widget zMakeWidget(WidgetClass kind, Widget board, const zControlRow& row, zResources& resources) {
    return XtCreateManagedWidget(zWidgetName(row).c_str(), kind, board, resources.args.data(),
                                 resources.count());
}

void zSetGeometry(Widget widget, const zRect& place) {
    XtVaSetValues(widget, XmNx, place.x, XmNy, place.y, XmNwidth, place.width, XmNheight, place.height,
                  nullptr);
}

bool zWidgetHas(Widget widget, int x, int y) {
    Position left = 0, top = 0;
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNx, &left, XmNy, &top, XmNwidth, &width, XmNheight, &height, nullptr);
    return x >= left && x < left + width && y >= top && y < top + height;
}

Pixel zBackground(Widget widget) {
    Pixel background = 0;
    XtVaGetValues(widget, XmNbackground, &background, nullptr);
    return background;
}

int zTextHeight(Widget labelOrField) {
    XmRenderTable table = nullptr;
    XtVaGetValues(labelOrField, XmNrenderTable, &table, nullptr);
    return XmStringHeight(table, zXmText("Ag").get());
}

Dimension zCentredMargin(Widget field, int height) {
    Dimension highlight = 0, shadow = 0;
    XtVaGetValues(field, XmNhighlightThickness, &highlight, XmNshadowThickness, &shadow, nullptr);
    const int spare = height - 2 * (highlight + shadow) - zTextHeight(field);
    return static_cast<Dimension>(std::max(0, spare / 2));
}

void zGrowScrollBars(Widget scrolled, Widget board) {
    const int thickness = zDialogUnits::ofBoard(board).grown(zBarThickness);
    Widget vertical = nullptr, horizontal = nullptr;
    XtVaGetValues(scrolled, XmNverticalScrollBar, &vertical, XmNhorizontalScrollBar, &horizontal, nullptr);
    if (vertical) XtVaSetValues(vertical, XmNwidth, thickness, nullptr);
    if (horizontal) XtVaSetValues(horizontal, XmNheight, thickness, nullptr);
}
