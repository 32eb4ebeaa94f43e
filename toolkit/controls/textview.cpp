#include "toolkit/controls/textview.h"

#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"

#include <Xm/Text.h>
#include <algorithm>
#include <cstdlib>

namespace {

// zScroll(5), zScroll(-1), and by pages zScroll(page, -1). The library's own actions move a caret, which
// nobody sees here.
void scroll(Widget text, XEvent*, String* words, Cardinal* count) {
    if (*count == 0) return;
    Widget bar = nullptr;  // counts lines
    int all = 0, shown = 0, above = 0;
    XtVaGetValues(XtParent(text), XmNverticalScrollBar, &bar, nullptr);
    XtVaGetValues(bar, XmNmaximum, &all, XmNsliderSize, &shown, XmNvalue, &above, nullptr);
    const bool pages = *count == 2;
    const int lines = std::atoi(words[pages ? 1 : 0]) * (pages ? std::max(1, shown - 1) : 1);
    XmTextScroll(text, std::clamp(lines, -above, std::max(0, all - shown - above)));
}

XtTranslations keys(XtAppContext context) {
    static char name[] = "zScroll";
    static XtActionsRec actions[] = {{name, scroll}};
    static const XtTranslations parsed = [&] {
        XtAppAddActions(context, actions, XtNumber(actions));
        return XtParseTranslationTable("<Key>osfUp: zScroll(-1)\n"
                                       "<Key>osfDown: zScroll(1)\n"
                                       "<Key>osfPageUp: zScroll(page, -1)\n"
                                       "<Key>osfPageDown: zScroll(page, 1)\n"
                                       "<Key>osfBeginLine: zScroll(-1000000)\n"  // all lines
                                       "<Key>osfEndLine: zScroll(1000000)\n"
                                       "Ctrl<Key>c: copy-clipboard()\n"
                                       "<Key>osfActivate: PrimitiveParentActivate()\n"
                                       "<Key>Return: PrimitiveParentActivate()\n"
                                       "<Key>osfCancel: PrimitiveParentCancel()");
    }();
    return parsed;
}

}  // namespace

zTextView::zTextView(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), place_(place) {
    zResources resources(place);
    resources.set(XmNeditMode, XmMULTI_LINE_EDIT).set(XmNeditable, False).set(XmNwordWrap, True);
    resources.set(XmNcursorPositionVisible, False).set(XmNscrollHorizontal, False);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    resources.set(XmNrenderTable, reinterpret_cast<XtArgVal>(
                                      zDisplayCache::of(XtDisplay(board)).renderTable(board, "fixed")));
    std::string name = zWidgetName(row);
    attach(XmCreateScrolledText(board, name.data(), resources.args.data(), resources.count()));
    XtManageChild(widget());
    zGrowScrollBars(outermost(), board);
    XtOverrideTranslations(widget(), keys(XtWidgetToApplicationContext(board)));
    zSetGeometry(outermost(), place_);
}

Widget zTextView::outermost() const {
    return XtParent(widget());
}

void zTextView::realized() {
    zSetGeometry(outermost(), place_);
}

void zTextView::setText(const std::string& text) {
    std::string shown = text;  // which the library does not write, but wants so
    XmTextSetString(widget(), shown.data());
}
