#include "toolkit/controls/dropdown.h"

#include "toolkit/controls/rowwidget.h"

#include <X11/StringDefs.h>
#include <Xm/ComboBox.h>
#include <Xm/List.h>
#include <Xm/TextF.h>

zDropDown::zDropDown(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), count_(static_cast<int>(row.items.size())) {
    std::vector<std::unique_ptr<zXmText>> texts;
    std::vector<XmString> items;
    for (const char* item : row.items) {
        texts.push_back(std::make_unique<zXmText>(item));
        items.push_back(texts.back()->get());
    }
    zResources resources(place);
    resources.set(XmNcomboBoxType, XmDROP_DOWN_LIST).set(XmNitems, reinterpret_cast<XtArgVal>(items.data()));
    resources.set(XmNitemCount, count_).set(XmNvisibleItemCount, count_);
    resources.set(XmNarrowSize, place.height - 4).set(XmNarrowSpacing, 0);
    resources.set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    attach(zMakeWidget(xmComboBoxWidgetClass, board, row, resources));
    const Widget text = XtNameToWidget(widget(), "*Text");
    XtVaSetValues(text, XmNmarginHeight, zCentredMargin(text, place.height - 4), nullptr);
    zSetGeometry(widget(), place);
    listen(XmNselectionCallback, [](zControl& self, void*) { static_cast<zDropDown&>(self).changed(); });
    const Widget shell = XtNameToWidget(widget(), "*GrabShell");
    listen(shell, XtNpopupCallback,
           [](zControl& self, void*) { static_cast<zDropDown&>(self).open_ = true; });
    listen(shell, XtNpopdownCallback, [](zControl& self, void*) {
        static_cast<zDropDown&>(self).open_ = false;
        static_cast<zDropDown&>(self).changed();
    });
}

// Arrow keys in an open list select each item that they pass: only the one on closing is reported.
void zDropDown::changed() {
    if (byProgram_ || open_ || selected() == reported_) return;
    reported_ = selected();
    if (const auto handler = onSelect) handler();
}

void zDropDown::load() {
    if (variable_) select(variable_.get());
    shown_ = selected();
}

void zDropDown::store() {
    const int now = selected();
    if (!variable_ || now == shown_) return;
    shown_ = now;
    variable_.set(static_cast<unsigned>(now));
}

int zDropDown::selected() const {
    const Widget list = XtNameToWidget(widget(), "*List");
    int* positions = nullptr;
    int found = 0;
    if (!XmListGetSelectedPos(list, &positions, &found)) return -1;
    const int first = positions[0] - 1;
    XtFree(reinterpret_cast<char*>(positions));
    return first;
}

void zDropDown::select(int position) {
    byProgram_ = true;
    if (position >= 0 && position < count_) {
        XtVaSetValues(widget(), XmNselectedPosition, position, nullptr);
    } else {
        static char nothing[] = "";
        XmListDeselectAllItems(XtNameToWidget(widget(), "*List"));
        XmTextFieldSetString(XtNameToWidget(widget(), "*Text"), nothing);
    }
    byProgram_ = false;
    reported_ = selected();
}
