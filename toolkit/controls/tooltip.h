// Help texts that appear when the pointer rests on a control, greyed ones included.
//
// The widget library's own tooltips take the keyboard away from their window for as long as they are shown;
// these do not. Delay and duration are the application resources toolTipPostDelay and toolTipPostDuration, in
// milliseconds.
#pragma once

#include "toolkit/display/widget.h"

#include <string>
#include <vector>

class zTooltips {
  public:
    // For the controls that stand on this board. Goes before the board does.
    explicit zTooltips(Widget board);
    ~zTooltips();
    zTooltips(const zTooltips&) = delete;
    zTooltips& operator=(const zTooltips&) = delete;

    void add(Widget control, std::string text);
    void realized();  // to be called once, when the controls have their windows
    void hide();

  private:
    struct Tip {
        Widget control;
        std::string text;
    };
    struct Handlers;

    void pointerAt(int x, int y);
    void pointerLeft();
    void show();
    void startTimer(int milliseconds, void (zTooltips::*action)());

    Widget board_;
    std::vector<Tip> tips_;
    const Tip* under_ = nullptr;  // the pointer is on this control, or was when a button was pressed there
    Widget shell_ = nullptr;      // while a text is shown
    unsigned long timer_ = 0;
    void (zTooltips::*timed_)() = nullptr;
    int delay_ = 0, duration_ = 0;
};
