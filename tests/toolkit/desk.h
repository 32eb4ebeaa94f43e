// The display of the toolkit's tests.
#pragma once

#include "tests/e2e/xsupport.h"
#include "toolkit/window/window.h"

#include <Xm/Xm.h>

// Fonts as the program has them; lamps of a window of this name differ in no colour.
inline const char* const deskResources[] = {"Tarvolin*bold*fontType: FONT_IS_XFT",
                                            "Tarvolin*bold*fontName: Liberation Sans",
                                            "Tarvolin*bold*fontStyle: Bold",
                                            "Tarvolin*bold*fontSize: 12",
                                            "Tarvolin*plain*fontType: FONT_IS_XFT",
                                            "Tarvolin*plain*fontName: Liberation Sans",
                                            "Tarvolin*plain*fontSize: 12",
                                            "Tarvolin*small*fontType: FONT_IS_XFT",
                                            "Tarvolin*small*fontName: Liberation Sans",
                                            "Tarvolin*small*fontSize: 9",
                                            "Tarvolin*fixed*fontType: FONT_IS_XFT",
                                            "Tarvolin*fixed*fontName: Liberation Mono",
                                            "Tarvolin*fixed*fontSize: 10",
                                            "Tarvolin*toolTipEnable: True",
                                            "Tarvolin*toolTipPostDelay: 50",
                                            "Tarvolin*toolTipPostDuration: 2000",
                                            "Tarvolin*lamps*background: #c0c0c0",
                                            "Tarvolin*lamps*selectColor: #c0c0c0",
                                            "Tarvolin*lamps*unselectColor: #c0c0c0",
                                            nullptr};

// The widget library remembers its first display for good: one for all tests of the process.
struct Desk {
    XServer server;
    zApplication application{"tarvolin", "Tarvolin", {}, deskResources};
    bool open = application.openDisplay();
};

inline Desk& desk() {
    static Desk instance;
    return instance;
}

// A window of this layout, shown, with a user.
class DeskTest : public testing::Test {
  protected:
    explicit DeskTest(const zLayout& layout) : window(application, layout) {}

    zApplication& application = desk().application;
    zFormDialog window;
    XUser user{application};

    void SetUp() override {
        ASSERT_TRUE(desk().open);
        window.show();
        ASSERT_TRUE(user.until([this] { return user.shellLike(XUser::titleOf(window.shell())); }));
        user.focus(window.shell());
        user.settle();
    }
    std::function<bool()> shown(const char* title) const {
        return [this, title] { return user.shellLike(title) != nullptr; };
    }
};
