#include "toolkit/controls/button.h"

#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/rowwidget.h"

#include <Xm/PushB.h>

namespace {

bool withShift(const XEvent* event) {
    if (!event) return false;
    const bool key = event->type == KeyPress || event->type == KeyRelease;
    return (key ? event->xkey.state : event->xbutton.state) & ShiftMask;
}

}  // namespace

zBitmapButton::zBitmapButton(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), place_(place) {
    const zXmText text(row.text);
    zResources resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    attach(zMakeWidget(xmPushButtonWidgetClass, board, row, resources));
    if (const Pixmap picture = zPixmapOf(widget(), row.picture, zBackground(widget()),
                                         zDialogUnits::ofBoard(board).baseHeight()))
        XtVaSetValues(widget(), XmNlabelType, XmPIXMAP_AND_STRING, XmNlabelPixmap, picture, nullptr);
    // Motif leaves Return to the window, which presses its default button.
    static const XtTranslations keys =
        XtParseTranslationTable("<Key>osfActivate: ArmAndActivate()\n<Key>Return: ArmAndActivate()\n"
                                "Shift<Key>osfSelect: ArmAndActivate()\nShift<Key>space: ArmAndActivate()");
    XtOverrideTranslations(widget(), keys);
    listen(XmNactivateCallback, [](zControl& self, void* data) {
        const auto& button = static_cast<zBitmapButton&>(self);
        const XEvent* event = static_cast<XmPushButtonCallbackStruct*>(data)->event;
        const auto handler = withShift(event) && button.onShiftClick ? button.onShiftClick : button.onClick;
        if (handler) handler();
    });
}

void zBitmapButton::place(const zRect& place) {
    place_ = place;
    zSetGeometry(widget(),
                 {place.x - frame_, place.y - frame_, place.width + 2 * frame_, place.height + 2 * frame_});
}

// In a window with a default button the library makes all of them larger, for the frame of that one.
void zBitmapButton::realized() {
    Dimension width = 0;
    XtVaGetValues(widget(), XmNwidth, &width, nullptr);
    frame_ = (width - place_.width) / 2;
    place(zRect(place_));
}
