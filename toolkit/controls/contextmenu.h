// Context menus: what can be done with what a control shows.
//
// A menu comes up with the right button at the pointer, and with the Menu key or Shift+F10 at the place in
// the control that has the focus. Arrow keys, Return and Escape work in it, as in every menu.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/widget.h"

#include <functional>
#include <string>
#include <vector>

struct zMenuRow {
    const char* label;
    std::function<void()> action;
    bool enabled = true;
    const char* keys = "";  // that do the same without the menu, as "Ctrl+C"
};
using zMenuRows = std::vector<zMenuRow>;

class zContextMenu {
  public:
    // What the menu asks of its control; in pixels of the widget.
    struct Control {
        Widget widget;
        std::function<void(int x, int y)> point;  // the user means what is here: selects it
        std::function<zRect()> place;             // of what is selected
    };

    // `rows` is called each time the menu is opened. No menu opens while it has none.
    zContextMenu(Control control, std::function<zMenuRows()> rows);
    ~zContextMenu();
    zContextMenu(const zContextMenu&) = delete;
    zContextMenu& operator=(const zContextMenu&) = delete;

  private:
    struct Handlers;

    void open(int rootX, int rootY, unsigned long time);
    void listenForRelease(Widget part);
    void remove();

    Control control_;
    std::function<zMenuRows()> makeRows_;
    zMenuRows rows_;            // of the menu that was opened last
    Widget menu_ = nullptr;     // it; removed when the next one opens
    unsigned long opened_ = 0;  // the server's time
};
