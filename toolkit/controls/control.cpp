#include "toolkit/controls/control.h"

#include <Xm/Xm.h>

// Connects a control to one callback list of a widget, for as long as the control lives.
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

void zControl::enable(bool on) {
    enabled_ = on;
    XtSetSensitive(outermost(), enabled_ && !greyed_);
}

void zControl::greySensitive(bool on) {
    greyed_ = on;
    XtSetSensitive(outermost(), enabled_ && !greyed_);
}

void zControl::listen(Widget widget, const char* callback, Handler handler) {
    listeners_.push_back(std::make_unique<Listener>(*this, widget, callback, handler));
}
