// Controls: one object per row of a layout table. A control is created and owned by its board and lives as
// long as its window. Its handlers are called from the event loop, never after the control is destroyed.
//
// A control can be bound to a variable, which must outlive it or the next bind(). load() shows the variable;
// store() writes it if what the control shows has changed since. What was not changed is not written, so a
// value that the control cannot show survives.
//
// bind() alone changes nothing on the screen. To change to another variable, for example when a page shows
// another instance: store() into the old one, bind(), load(). Without that store(), a later one writes the
// user's changes to the new variable.
//
// A number may be an int, an unsigned or a std::int16_t. Each class says what it is bound to.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/controls/variable.h"
#include "toolkit/display/widget.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class zContextMenu;
struct zMenuRow;

class zControl {
  public:
    virtual ~zControl();
    zControl(const zControl&) = delete;
    zControl& operator=(const zControl&) = delete;

    const zControlRow& row() const { return row_; }
    int id() const { return row_.id; }
    Widget widget() const { return widget_; }
    virtual Widget outermost() const { return widget_; }  // the board's child: of a list its scrolled window

    virtual void enable(bool on);

    // Greys what the control shows of the outside world, which may be out of date. Only controls that are
    // read and not written, such as read-only fields, lamps and tables, have a look for it.
    virtual void grey(bool /*on*/) {}

    // Gives the control a context menu (contextmenu.h).
    void setMenu(std::function<std::vector<zMenuRow>()> rows);
    bool hasMenu() const { return menu_ != nullptr; }

    // Puts the text on the clipboard, where it stays when the window is closed.
    void toClipboard(std::string text) const;

    virtual void bind(zVariable) {}
    virtual void load() {}
    virtual void store() {}

    // Gives the control another place and size, in pixels of the board.
    virtual void place(const zRect& place);

    // Writes what store() would write into another variable. Nothing else changes.
    virtual void storeInto(zVariable) const {}

    // Called when the board has been realized.
    virtual void realized() {}

  protected:
    explicit zControl(const zControlRow& row);

    // For the context menu, in pixels of the widget: the user means what is here; and the place of what is
    // selected.
    virtual void point(int /*x*/, int /*y*/) {}
    virtual zRect selectedPlace() const;

    // For grey(): insensitive while greyed or not enabled.
    void greySensitive(bool on);

    // To be called first in the constructor of a control.
    void attach(Widget widget) { widget_ = widget; }

    // Calls `handler` from a callback list of the widget, until the control is destroyed.
    using Handler = void (*)(zControl& self, void* callData);
    void listen(const char* callback, Handler handler) { listen(widget_, callback, handler); }
    void listen(Widget widget, const char* callback, Handler handler);

  private:
    struct Listener;

    const zControlRow& row_;
    Widget widget_ = nullptr;
    bool enabled_ = true, greyed_ = false;
    std::vector<std::unique_ptr<Listener>> listeners_;
    std::unique_ptr<zContextMenu> menu_;
};
