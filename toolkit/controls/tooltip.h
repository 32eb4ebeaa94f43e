// Tooltips: texts that appear when the pointer rests on a control, even a greyed one. A key or a mouse button
// makes them go.
//
// Motif's own tooltips take the keyboard focus while they are shown; these do not. Delay and duration are the
// application resources toolTipPostDelay and toolTipPostDuration, in milliseconds.
#pragma once

#include "toolkit/display/alarm.h"
#include "toolkit/display/presses.h"
#include "toolkit/display/widget.h"

#include <deque>
#include <string>

class zTooltips {
  public:
    // For the controls on this board, whose widget must outlive the object. The controls propagate the motion
    // of the pointer to the board.
    explicit zTooltips(Widget board);
    ~zTooltips();
    zTooltips(const zTooltips&) = delete;
    zTooltips& operator=(const zTooltips&) = delete;

    enum class Place { pointer, outside };  // below the pointer, or off the control, which has to be read

    void add(Widget control, std::string text, Place place = Place::pointer);
    // What is to be said of a control at the moment; it follows the control's own text, if there is one.
    void setDetail(Widget control, std::string detail);
    void hide();

  private:
    struct Tip {
        Widget control;
        std::string text, detail;
        Place place;

        std::string whole() const;
    };
    struct Handlers;

    void pointerAt(int x, int y);
    void pointerLeft();
    void show();
    void put(int rootX, int rootY, int width, int height) const;

    Widget board_;
    std::deque<Tip> tips_;
    const Tip* under_ = nullptr;  // of the control under the pointer
    Widget shell_ = nullptr;      // null: no text is shown
    Widget label_ = nullptr;      // in the shell
    std::chrono::milliseconds delay_{}, duration_{};
    zAlarm alarm_;      // until the text is shown, and then until it goes
    zPresses presses_;  // of whatever control
};
