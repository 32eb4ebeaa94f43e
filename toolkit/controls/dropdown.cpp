#include "toolkit/controls/dropdown.h"

#include "toolkit/controls/rowwidget.h"

#include <X11/StringDefs.h>
#include <X11/keysym.h>
#include <Xm/ComboBox.h>
#include <Xm/List.h>
#include <Xm/TextF.h>
#include <Xm/VirtKeys.h>
#include <utility>

// The text has the keyboard while the list is closed, the list while it is open.
struct zDropDown::Handlers {
    static void event(Widget, XtPointer self, XEvent* event, Boolean* goesOn) {
        auto& control = *static_cast<zDropDown*>(self);
        if (event->type == KeyPress)
            *goesOn = !press(control, event->xkey);
        else if (event->type == FocusOut && !control.open_)
            control.changed();
    }

    // True: the library must not have the key.
    static bool press(zDropDown& control, const XKeyEvent& key) {
        Modifiers used = 0;
        KeySym symbol = NoSymbol;
        XtTranslateKeycode(key.display, static_cast<KeyCode>(key.keycode), key.state, &used, &symbol);
        if (symbol == osfXK_Cancel) control.cancelled_ = control.open_;
        if (symbol == XK_Return || symbol == XK_KP_Enter || symbol == osfXK_Activate) {
            control.changed();  // unless it is open
            return false;
        }
        if (key.state & ControlMask) return false;  // opens and closes the list
        const int position = control.selected();
        return (symbol == osfXK_Down && position == control.count_ - 1) ||
               (symbol == osfXK_Up && position == 0);
    }
};

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
    const Widget text = part("*Text");
    XtVaSetValues(text, XmNmarginHeight, zCentredMargin(text, place.height - 4), nullptr);
    look_.emplace(text);
    zSetGeometry(widget(), place);

    for (const char* name : {"*Text", "*List"})
        XtInsertEventHandler(part(name), KeyPressMask | FocusChangeMask, False, Handlers::event, this,
                             XtListHead);
    const Widget shell = part("*GrabShell");
    listen(shell, XtNpopupCallback, [](zControl& self, void*) {
        auto& control = static_cast<zDropDown&>(self);
        control.open_ = true;
        control.openedOn_ = control.selected();
    });
    listen(shell, XtNpopdownCallback, [](zControl& self, void*) {
        auto& control = static_cast<zDropDown&>(self);
        control.open_ = false;
        if (std::exchange(control.cancelled_, false)) control.show(control.openedOn_);
        control.changed();
    });
}

zDropDown::~zDropDown() {
    for (const char* name : {"*Text", "*List"})
        XtRemoveEventHandler(part(name), KeyPressMask | FocusChangeMask, False, Handlers::event, this);
}

Widget zDropDown::part(const char* name) const {
    return XtNameToWidget(widget(), name);
}

void zDropDown::enable(bool on) {
    zControl::enable(on);
    look_->grey(!on);
}

void zDropDown::changed() {
    if (open_ || selected() == reported_) return;
    reported_ = selected();
    if (const auto handler = onSelect) handler();
}

void zDropDown::load() {
    if (variable_) select(variable_.get());
    shown_ = selected();
}

void zDropDown::store() {
    changed();
    const int now = selected();
    if (!variable_ || now == shown_) return;
    shown_ = now;
    variable_.set(static_cast<unsigned>(now));
}

void zDropDown::storeInto(zVariable variable) const {
    zBoundNumber other;
    other.bind(variable);
    if (const int now = selected(); now != shown_) other.set(static_cast<unsigned>(now));
}

int zDropDown::selected() const {
    int* positions = nullptr;
    int found = 0;
    if (!XmListGetSelectedPos(part("*List"), &positions, &found)) return -1;
    const int first = positions[0] - 1;
    XtFree(reinterpret_cast<char*>(positions));
    return first;
}

void zDropDown::select(int position) {
    show(position);
    reported_ = selected();
}

void zDropDown::show(int position) {
    if (position >= 0 && position < count_) {
        XtVaSetValues(widget(), XmNselectedPosition, position, nullptr);
    } else {
        static char nothing[] = "";
        XmListDeselectAllItems(part("*List"));
        XmTextFieldSetString(part("*Text"), nothing);
    }
}
