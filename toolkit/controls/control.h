// Controls: one object per row of a layout table. A control is created and owned by its board and lives as long as
// its window. Its handlers are called from the event loop, never after the control is destroyed.
//
// A control can be bound to a variable, which must outlive it or the next bind(). load() shows the variable; store()
// writes it if the user has changed the control since. What was not changed is not written, so a value that the
// control cannot show survives.
//
// bind() alone changes nothing on the screen. To turn to another variable, as when a page shows another instance:
// store() into the old one, bind(), load(). Without the store() what the user has changed goes to the new variable.
//
// Which numbers a control takes (int, unsigned or 16 bits, see variable.h) and what they mean is said with its class.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/controls/variable.h"
#include "toolkit/display/widget.h"

#include <memory>
#include <vector>

class zControl {
  public:
    virtual ~zControl();
    zControl(const zControl&) = delete;
    zControl& operator=(const zControl&) = delete;

    int id() const { return id_; }
    Widget widget() const { return widget_; }
    virtual Widget outermost() const { return widget_; }  // what stands on the board: a list's is its window

    virtual void enable(bool on);

    virtual void bind(zVariable) {}
    virtual void load() {}
    virtual void store() {}

    // The board has its window now.
    virtual void realized() {}

  protected:
    explicit zControl(const zControlRow& row);

    // Takes over the widget and calls `handler` from its callback list.
    void attach(Widget widget) { widget_ = widget; }
    using Handler = void (*)(zControl& self, void* callData);
    void listen(const char* callback, Handler handler) { listen(widget_, callback, handler); }
    void listen(Widget widget, const char* callback, Handler handler);

  private:
    struct Listener;

    int id_;
    Widget widget_ = nullptr;
    std::vector<std::unique_ptr<Listener>> listeners_;
};
