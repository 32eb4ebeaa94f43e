// A user of a tool that runs as a process of its own: windows are known by their titles, controls by their
// places.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

class OutsideUser {
  public:
    // Windows may go while they are looked at.
    OutsideUser()
        : before_(XSetErrorHandler([](Display*, XErrorEvent*) { return 0; })),
          display_(XOpenDisplay(nullptr)) {
        if (!display_) throw std::runtime_error("no display");
    }
    ~OutsideUser() {
        leave();
        XSetErrorHandler(before_);
    }
    OutsideUser(const OutsideUser&) = delete;
    OutsideUser& operator=(const OutsideUser&) = delete;

    void leave() {  // before the server dies
        if (display_) XCloseDisplay(display_);
        display_ = nullptr;
    }

    // Waits for a window whose title begins so, and gives it the keyboard. False when none comes up.
    bool sees(std::string_view title, double seconds = 10) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
        do {
            if ((window_ = find(title))) {
                rest();
                XSetInputFocus(display_, window_, RevertToParent, CurrentTime);
                rest();
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        } while (std::chrono::steady_clock::now() < deadline);
        return false;
    }
    bool isUp(std::string_view title) { return find(title) != 0; }

    // The left button at this place of the window that was seen last.
    void click(int x, int y, bool waits = true) {
        int rootX = 0, rootY = 0;
        Window child = 0;
        XTranslateCoordinates(display_, window_, DefaultRootWindow(display_), x, y, &rootX, &rootY, &child);
        XTestFakeMotionEvent(display_, -1, rootX, rootY, 0);
        XTestFakeButtonEvent(display_, 1, True, 0);
        XTestFakeButtonEvent(display_, 1, False, 0);
        XSync(display_, False);
        if (waits) rest();
    }
    // Clicks on the tab of another page until the page is there; the tool may still be busy with its window.
    void turn(int x, int y) {
        Window before = 0;
        for (int same = 0; same < 15; std::this_thread::sleep_for(std::chrono::milliseconds(20))) {
            const Window now = onPage();
            same = now == before && now != window_ ? same + 1 : 0;
            before = now;
        }
        for (int i = 0; i < 250 && onPage() == before; ++i) {
            if (i % 50 == 0) click(x, y);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        rest();
    }
    // Clicks at this place until such a window comes up.
    bool opens(int x, int y, std::string_view title) {
        for (int i = 0; i < 5; ++i) {
            click(x, y);
            if (sees(title, 2)) return true;
        }
        return false;
    }
    void key(const char* name, const char* held = nullptr) {
        if (held) XTestFakeKeyEvent(display_, code(held), True, 0);
        XTestFakeKeyEvent(display_, code(name), True, 0);
        XTestFakeKeyEvent(display_, code(name), False, 0);
        if (held) XTestFakeKeyEvent(display_, code(held), False, 0);
        XSync(display_, False);
    }
    // Replaces what stands in the field at this place.
    void enter(int x, int y, std::string_view text) {
        click(x, y);
        key("slash", "Control_L");
        key("Delete");
        for (const char c : text) key(std::string(1, c).c_str());
        rest();
    }

  private:
    // The innermost window at a place that every page has.
    Window onPage() {
        int x = 300, y = 300;
        for (Window inner = window_;;) {
            Window child = 0, deeper = 0;
            int thereX = 0, thereY = 0;
            XTranslateCoordinates(display_, inner, inner, x, y, &thereX, &thereY, &child);
            if (!child) return inner;
            XTranslateCoordinates(display_, inner, child, x, y, &thereX, &thereY, &deeper);
            inner = child;
            x = thereX;
            y = thereY;
        }
    }
    Window find(std::string_view title) {
        Window root = 0, parent = 0, *windows = nullptr;
        unsigned count = 0;
        if (!XQueryTree(display_, DefaultRootWindow(display_), &root, &parent, &windows, &count)) return 0;
        Window found = 0;
        for (unsigned i = 0; i < count && !found; ++i) {
            char* name = nullptr;
            XWindowAttributes attributes{};
            if (XFetchName(display_, windows[i], &name) && name &&
                std::string_view(name).starts_with(title) &&
                XGetWindowAttributes(display_, windows[i], &attributes) && attributes.map_state == IsViewable)
                found = windows[i];
            if (name) XFree(name);
        }
        XFree(windows);
        return found;
    }
    unsigned code(const char* name) { return XKeysymToKeycode(display_, XStringToKeysym(name)); }
    // Until the tool has seen what was done, if nothing holds it up.
    void rest() {
        XSync(display_, False);
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
    }

    XErrorHandler before_;
    Display* display_;
    Window window_ = 0;
};

// Places in the windows, in pixels of the usual font.
struct Spot {
    int x, y;
};
namespace spot {
inline constexpr Spot setup{577, 111}, ok{278, 621}, cancel{409, 621};
inline constexpr Spot lecPage{137, 30}, lesPage{199, 30}, lecsPage{259, 30}, ipPage{315, 30};
inline constexpr Spot pvcOnly{211, 140}, lecName{94, 201}, addPvc{528, 384}, pvcVci{105, 171},
    pvcMac{105, 85};
inline constexpr Spot lecEnable{84, 140}, lesEnable{84, 145}, lecsEnable{84, 103}, ipEnable{98, 103};
constexpr Spot instance(int number) {
    return {64 * number - 24, 64};
}  // "LEC 1" is 1
}  // namespace spot
