#include "toolkit/controls/statics.h"

#include "toolkit/controls/rowwidget.h"

#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/Separator.h>

namespace {

void setLabel(Widget widget, const char* text) {
    XtVaSetValues(widget, XmNlabelString, zXmText(text).get(), nullptr);
}

}  // namespace

zStatic::zStatic(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    zResources resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False).set(XmNtraversalOn, False);
    resources.set(XmNalignment, XmALIGNMENT_BEGINNING).set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    attach(zMakeWidget(xmLabelWidgetClass, board, row, resources));
}

void zStatic::setText(const char* text) {
    setLabel(widget(), text);
}

bool zStatic::fits(const char* text) const {
    XmRenderTable fonts = nullptr;
    Dimension width = 0;
    XtVaGetValues(widget(), XmNrenderTable, &fonts, XmNwidth, &width, nullptr);
    return XmStringWidth(fonts, zXmText(text).get()) <= width;
}

zFrame::zFrame(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    zResources resources(place);
    const bool vertical = row.place.width <= 1;
    // The line is two pixels wide; one dialog unit can be three.
    resources.set(XmNorientation, vertical ? XmVERTICAL : XmHORIZONTAL).set(XmNmargin, 0);
    attach(zMakeWidget(xmSeparatorWidgetClass, board, row, resources));
}

zGroupBox::zGroupBox(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    zResources resources(place);
    resources.set(XmNshadowType, XmSHADOW_ETCHED_IN).set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    attach(zMakeWidget(xmFrameWidgetClass, board, row, resources));
    const zXmText text(row.text);
    title_ = XtVaCreateManagedWidget("title", xmLabelWidgetClass, widget(), XmNlabelString, text.get(),
                                     XmNframeChildType, XmFRAME_TITLE_CHILD, XmNmarginHeight, 0, nullptr);
    zSetGeometry(widget(), place);
}

void zGroupBox::setTitle(const char* text) {
    setLabel(title_, text);
}

// The controls inside are siblings and must not be covered.
void zGroupBox::realized() {
    XLowerWindow(XtDisplay(widget()), XtWindow(widget()));
}
