// A tool that runs as a process of its own, and its user: windows are known by their titles, controls by
// their places.
#pragma once

#include "tests/e2e/tool.h"
#include "tests/e2e/xsupport.h"
#include "version.h"

#include <X11/Xlib.h>

// Places in the windows, in pixels of the usual font.
struct Spot {
    int x, y;
};
namespace spot {
inline constexpr Spot setup{577, 111}, statistics{577, 180}, ok{278, 621}, cancel{409, 621};
inline constexpr Spot lecPage{137, 30}, lesPage{199, 30}, lecsPage{259, 30}, ipPage{315, 30};
inline constexpr Spot pvcOnly{211, 140}, lecName{94, 201}, addPvc{528, 384}, pvcVci{105, 171},
    pvcMac{105, 85};
inline constexpr Spot lecEnable{84, 140}, lesEnable{84, 145}, lecsEnable{84, 103}, ipEnable{98, 103};
constexpr Spot instance(int number) {
    return {64 * number - 24, 64};
}  // "LEC 1" is 1
}  // namespace spot

class OutsideUser : public XInput {
  public:
    // Windows may go while they are looked at.
    OutsideUser() : before_(XSetErrorHandler([](Display*, XErrorEvent*) { return 0; })) {}
    ~OutsideUser() {
        leave();
        XSetErrorHandler(before_);
    }
    OutsideUser(const OutsideUser&) = delete;
    OutsideUser& operator=(const OutsideUser&) = delete;

    // Waits for a window whose title begins so, and gives it the keyboard. False when none comes up.
    bool sees(std::string_view title, double seconds = 10) {
        Window found = 0;
        if (!soon([&] { return (found = find(title)) != 0; }, seconds)) return false;
        window_ = found;
        rest();
        giveKeyboard(window_);
        rest();
        return true;
    }
    bool isUp(std::string_view title) { return find(title) != 0; }
    // Of the window that was seen last.
    Spot size() const {
        XWindowAttributes now{};
        XGetWindowAttributes(display_, window_, &now);
        return {now.width, now.height};
    }

    // The left button at this place of the window that was seen last.
    void click(Spot spot, bool waits = true) {
        int rootX = 0, rootY = 0;
        Window child = 0;
        XTranslateCoordinates(display_, window_, DefaultRootWindow(display_), spot.x, spot.y, &rootX, &rootY,
                              &child);
        pressAt(rootX, rootY, 1);
        if (waits) rest();
    }
    void point(int rootX, int rootY) { pressAt(rootX, rootY, 0); }
    // Clicks on the tab of another page until the page is there; the tool may still be busy with its window.
    void turn(Spot spot) {
        Window before = 0;
        for (int same = 0; same < 15; waitABit()) {
            const Window now = onPage();
            same = now == before && now != window_ ? same + 1 : 0;
            before = now;
        }
        for (int i = 0; i < 250 && onPage() == before; ++i, waitABit())
            if (i % 50 == 0) click(spot);
        rest();
    }
    // Clicks at this place until such a window comes up.
    bool opens(Spot spot, std::string_view title) {
        for (int i = 0; i < 5; ++i) {
            click(spot);
            if (sees(title, 2)) return true;
        }
        return false;
    }
    // Replaces what stands in the field at this place.
    void enter(Spot spot, std::string_view text) {
        click(spot);
        pressKey("slash", "Control_L");
        pressKey("Delete");
        for (const char c : text) pressKey(std::string(1, c).c_str());
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
        for (const Window window : shownWindows(display_))
            if (titleOfWindow(display_, window).starts_with(title)) return window;
        return 0;
    }
    // Until the tool has seen what was done, if nothing holds it up.
    void rest() {
        XSync(display_, False);
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
    }

    XErrorHandler before_;
    Window window_ = 0;
};

// One administrator, with a display of their own.
struct Administrator {
    XServer server;
    Tool tool;
    OutsideUser user;

    explicit Administrator(const TempRoot& root, const std::vector<std::string>& arguments = {})
        : tool(root, arguments) {
        EXPECT_TRUE(user.sees(programTitle)) << tool.output();
    }

    void begin() {
        ASSERT_TRUE(user.sees(programTitle));
        ASSERT_TRUE(user.opens(spot::setup, "Setup ATM")) << tool.output();
        user.turn(spot::lecPage);
    }
    void rename(int client, const std::string& name) {
        user.click(spot::instance(client));
        user.enter(spot::lecName, name);
    }
    void addPvc(int vci) {
        user.click(spot::instance(1));
        ASSERT_TRUE(user.opens(spot::addPvc, "PVC Settings"));
        user.enter(spot::pvcMac, fmt::format("00000000{:04}", vci));
        user.enter(spot::pvcVci, std::to_string(vci));
        user.pressKey("Return");
        ASSERT_TRUE(soon([&] { return !user.isUp("PVC Settings"); }));
        ASSERT_TRUE(user.sees("Setup ATM"));
    }
};
