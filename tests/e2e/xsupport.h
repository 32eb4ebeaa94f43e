// An X server of the test's own, and a user at its mouse and keyboard.
#pragma once

#include "toolkit/table/table.h"
#include "toolkit/window/application.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <tuple>
#include <vector>

struct _XDisplay;

template <class Value> Value resourceOf(Widget widget, const char* name) {
    Value value{};
    XtVaGetValues(widget, name, &value, nullptr);
    return value;
}
zRect placeOf(Widget widget);  // in its parent
inline auto numbers(const zRect& place) {
    return std::tuple(place.x, place.y, place.width, place.height);
}

// What a window shows.
struct WindowImage {
    explicit WindowImage(Widget of);
    unsigned long at(int x, int y) const { return pixels[asIndex(y * width + x)]; }

    int width, height;
    std::vector<unsigned long> pixels;  // row by row
};

// Xvfb for as long as the object lives; DISPLAY names it. Visual classes as in X.h: 3 is PseudoColor, 4
// TrueColor.
class XServer {
  public:
    explicit XServer(const std::string& screen = "1280x1024x24", const char* visualClass = "4");
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    void kill();  // at once, as when a server crashes
    void stop();  // it stands still, as behind a link that has broken down

  private:
    pid_t process_ = -1;
};

// The windows on the screen, from the lowest up.
std::vector<unsigned long> shownWindows(_XDisplay* display);
std::string titleOfWindow(_XDisplay* display, unsigned long window);

// A mouse and a keyboard, on a connection of their own to the display. What is done only is in the server's
// queue then.
class XInput {
  public:
    XInput();
    ~XInput() { leave(); }
    XInput(const XInput&) = delete;
    XInput& operator=(const XInput&) = delete;

    // A key, named as in keysymdef.h ("Return", "Tab", "a"), with "Control_L" or another one held.
    void pressKey(const char* name, const char* held = nullptr);
    void leave();  // before the server dies

  protected:
    void pressAt(int rootX, int rootY, int times, unsigned button = 1);  // 0 times: only the pointer moves
    void giveKeyboard(unsigned long window);  // there is no window manager to do it

    _XDisplay* display_;
};

// A second client of the display, while `application` runs the program under test in this process.
class XUser : public XInput {
  public:
    struct Place {
        int x, y;
    };

    explicit XUser(zApplication& application) : application_(application) {}

    // The widget or window with this name anywhere in the application's windows, or null.
    Widget widget(const std::string& name) const;
    Widget widget(int id) const { return widget("id" + std::to_string(id)); }

    void click(Widget target, int times = 1);  // the middle
    void clickAt(Widget target, int x, int y, int times = 1);
    void rightClickAt(Widget target, int x, int y);
    void rightButton(Widget target, int x, int y, bool down);  // does not settle
    void pointAt(Widget target);
    void drag(Widget target, Place from, Place to, const char* key = nullptr);  // pressed before the release
    void resize(Widget shell, int width, int height);                           // as a window manager does
    void clickMiddle(Widget target);                                       // the button, near the left edge
    void key(const char* name, const char* held = nullptr);                // as pressKey(), and settles
    void pressButton(Widget target, int x = 5, int y = 5, int times = 1);  // does not settle
    void type(std::string_view text);  // lower case letters, digits, '-' and '.'
    void focus(Widget shell);
    void askToClose(Widget shell);  // as a window manager does; does not settle

    // Runs the event loop until the condition holds; false after `seconds`.
    bool until(const std::function<bool()>& condition, double seconds = 10) const;
    void settle() const;  // what is under way is done and drawn

    // Calls `action` from the event loop, also from a modal one, as soon as the condition holds.
    void when(std::function<bool()> condition, std::function<void()> action);

    // The mapped shell whose title begins so, or null.
    Widget shellLike(const std::string& beginning) const;
    static std::string titleOf(Widget shell);
    static std::string messageOf(Widget shell);  // the text of a message box
    static std::string plain(union __XmStringRec* text);
    static std::string labelOf(Widget control, const char* resource = "labelString");
    static std::string textOf(Widget field);
    static zTable& tableIn(Widget frame);
    // How many pixels of a window, without so much of its left and its top, have which colour: 0xrrggbb.
    std::map<unsigned, int> colours(Widget target, int left = 0, int top = 0) const;
    int darkest(Widget target, int left = 0, int top = 0) const;  // brightness of one of them, 0 to 255
    static std::vector<std::string> cutTexts(zTable& table);      // that have no room in their cells
    std::string clipboard() const;                                // "" without an owner
    std::string tooltipOf(Widget control);  // after the pointer has come to rest on it; empty: it has none

  private:
    struct Watch;

    zApplication& application_;
};
