// Push buttons.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/display/picture.h"

#include <functional>

class zBitmapButton : public zControl {
  public:
    zBitmapButton(Widget board, const zRect& place, const zControlRow& row);

    void place(const zRect& place) override;
    void realized() override;

    std::function<void()> onClick;
    std::function<void()> onShiftClick;  // with Shift held, by mouse or key; without it: onClick

  private:
    zRect place_;    // of the button itself
    int frame_ = 0;  // around it, in pixels
};
