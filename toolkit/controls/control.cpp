#include "toolkit/controls/control.h"

#include "toolkit/controls/button.h"
#include "toolkit/controls/choice.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/lamp.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/controls/statics.h"
#include "toolkit/controls/tabstrip.h"
#include "toolkit/table/table.h"

#include <Xm/Xm.h>

// Joins one callback list of a widget to a control; leaves the list with the control.
struct zControl::Listener {
    zControl& control;
    Widget widget;
    const char* callback;
    Handler handler;

    Listener(zControl& c, Widget w, const char* list, Handler h)
        : control(c), widget(w), callback(list), handler(h) {
        XtAddCallback(widget, callback, call, this);
    }
    ~Listener() { XtRemoveCallback(widget, callback, call, this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    static void call(Widget, XtPointer self, XtPointer data) {
        const auto* listener = static_cast<Listener*>(self);
        listener->handler(listener->control, data);
    }
};

zControl::zControl(const zControlRow& row) : id_(row.id) {}

zControl::~zControl() = default;

std::unique_ptr<zControl> zControl::create(Widget board, const zDialogUnits& units, const zControlRow& row) {
    const zRect place = units.pixels(row.place);
    switch (row.kind) {
    case zKind::staticText:
        return std::make_unique<zStatic>(board, place, row);
    case zKind::edit:
        return std::make_unique<zEdit>(board, place, row);
    case zKind::numberEdit:
        return std::make_unique<zNumberEdit>(board, place, row);
    case zKind::listBox:
        return std::make_unique<zListBox>(board, place, row);
    case zKind::dropDown:
        return std::make_unique<zDropDown>(board, units.pixels(zDropDown::closed(row.place)), row);
    case zKind::checkBox:
        return std::make_unique<zCheckBox>(board, place, row);
    case zKind::radioButton:
        return std::make_unique<zRadioButton>(board, place, row);
    case zKind::bitmapButton:
        return std::make_unique<zBitmapButton>(board, place, row);
    case zKind::lamp:
        return std::make_unique<zLamp>(board, place, row);
    case zKind::groupBox:
        return std::make_unique<zGroupBox>(board, place, row);
    case zKind::tabStrip:
        return std::make_unique<zTabStrip>(board, place, row);
    case zKind::notebook:
        return std::make_unique<zNotebook>(board, place, row);
    case zKind::table:
        return std::make_unique<zTable>(board, place, row);
    case zKind::frame:
        return std::make_unique<zFrame>(board, place, row);
    }
    return nullptr;
}

void zControl::enable(bool on) {
    XtSetSensitive(outermost(), on);
}

void zControl::listen(Widget widget, const char* callback, Handler handler) {
    listeners_.push_back(std::make_unique<Listener>(*this, widget, callback, handler));
}
