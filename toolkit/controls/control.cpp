#include "toolkit/controls/control.h"

#include "toolkit/controls/contextmenu.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/clipboard.h"

#include <Xm/Xm.h>
#include <utility>

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

zControl::zControl(const zControlRow& row) : row_(row) {}

zControl::~zControl() = default;

void zControl::enable(bool on) {
    enabled_ = on;
    XtSetSensitive(outermost(), enabled_ && !greyed_);
}

void zControl::place(const zRect& place) {
    zSetGeometry(outermost(), place);
}

void zControl::greySensitive(bool on) {
    greyed_ = on;
    XtSetSensitive(outermost(), enabled_ && !greyed_);
}

void zControl::setMenu(std::function<zMenuRows()> rows) {
    menu_ =
        std::make_unique<zContextMenu>(zContextMenu::Control{widget_, [this](int x, int y) { point(x, y); },
                                                             [this] { return selectedPlace(); }},
                                       std::move(rows));
}

void zControl::toClipboard(std::string text) const {
    zCopyToClipboard(widget_, std::move(text), XtLastTimestampProcessed(XtDisplay(widget_)));
}

zRect zControl::selectedPlace() const {
    Dimension width = 0, height = 0;
    XtVaGetValues(widget_, XmNwidth, &width, XmNheight, &height, nullptr);
    return {0, 0, width, height};
}

void zControl::listen(Widget widget, const char* callback, Handler handler) {
    listeners_.push_back(std::make_unique<Listener>(*this, widget, callback, handler));
}
