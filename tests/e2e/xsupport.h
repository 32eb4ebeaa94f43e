// An X server of the test's own, and a user at its mouse and keyboard.
#pragma once

#include "toolkit/table/table.h"
#include "toolkit/window/application.h"

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

struct _XDisplay;

// Xvfb for as long as the object lives; DISPLAY names it. Visual classes as in X.h: 3 is PseudoColor, 4
// TrueColor.
class XServer {
  public:
    explicit XServer(const std::string& screen = "1280x1024x24", const char* visualClass = "4");
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    void kill();  // at once, as when a server crashes

  private:
    pid_t process_ = -1;
};

// A second client of the display that moves the pointer and presses keys, while `application` runs the
// program under test in this process.
class XUser {
  public:
    explicit XUser(zApplication& application);
    ~XUser();
    XUser(const XUser&) = delete;
    XUser& operator=(const XUser&) = delete;

    // The widget with this name anywhere in the application's windows, or null.
    Widget widget(const std::string& name) const;
    Widget widget(int id) const { return widget("id" + std::to_string(id)); }

    void click(Widget target, int times = 1);  // the middle
    void clickAt(Widget target, int x, int y, int times = 1);
    void pointAt(Widget target);
    // A key, named as in keysymdef.h ("Return", "Tab", "a"), with "Control_L" or another one held.
    void key(const char* name, const char* held = nullptr);
    // Key and click without settling: the events are left in the queue.
    void pressKey(const char* name, const char* held = nullptr);
    void pressButton(Widget target, int x = 5, int y = 5);
    void type(std::string_view text);  // lower case letters, digits, '-' and '.'
    void focus(Widget shell);          // there is no window manager to do it
    void askToClose(Widget shell);     // as a window manager does; does not settle

    // Runs the event loop until the condition holds; false after `seconds`.
    bool until(const std::function<bool()>& condition, double seconds = 10) const;
    void settle() const;  // what is under way is done and drawn

    // Calls `action` from the event loop, also from a modal one, as soon as the condition holds.
    void when(std::function<bool()> condition, std::function<void()> action);

    // The mapped shell whose title begins so, or null.
    Widget shellLike(const std::string& beginning) const;
    static std::string titleOf(Widget shell);
    static std::string messageOf(Widget shell);  // the text of a message box
    static std::string labelOf(Widget control, const char* resource = "labelString");
    static std::string textOf(Widget field);
    static zTable& tableIn(Widget frame);
    // The brightness, from 0 to 255, of the darkest pixel of a window, without so much of its left and its
    // top.
    int darkest(Widget target, int left = 0, int top = 0) const;
    static std::vector<std::string> cutTexts(zTable& table);  // that have no room in their cells
    std::string tooltipOf(Widget control);  // after the pointer has come to rest on it; empty: it has none

  private:
    struct Watch;

    zApplication& application_;
    _XDisplay* display_;  // the user's own connection
};
