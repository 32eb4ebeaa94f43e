// The display of the toolkit's tests. Include it after gtest: it brings the window system's macros.
#pragma once

#include "tests/e2e/xsupport.h"
#include "toolkit/window/window.h"

// The widget library remembers its first display for good: one for all tests of the process.
struct Desk {
    XServer server;
    zApplication application;
    bool open;

    Desk();
};

inline Desk::Desk()
    : application("tarvolin", "Tarvolin", {"-xrm", "Tarvolin*id13.background: #ff0000"},
                  [] {
                      // Fonts as the program has them.
                      static const char* const lines[] = {"Tarvolin*bold*fontType: FONT_IS_XFT",
                                                          "Tarvolin*bold*fontName: Liberation Sans",
                                                          "Tarvolin*bold*fontStyle: Bold",
                                                          "Tarvolin*bold*fontSize: 12",
                                                          "Tarvolin*toolTipEnable: True",
                                                          "Tarvolin*toolTipPostDelay: 50",
                                                          nullptr};
                      return lines;
                  }()),
      open(application.openDisplay()) {}

inline Desk& desk() {
    static Desk instance;
    return instance;
}
