// Controls: one object per row of a layout table. A control lives as long as its window, which makes and owns
// it; its handlers are plain functions, called from the event loop and never after the control is gone.
//
// A control can be bound to a variable, which must outlive it. load() shows the variable; store() puts what the
// user has changed since then into it. What was not changed is not stored, so that a value that the control
// cannot show survives.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/widget.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

// What a control can be bound to: a number (a flag, a position, the id of a choice), an unsigned number, a text.
using zVariable = std::variant<int*, unsigned*, std::string*>;

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
