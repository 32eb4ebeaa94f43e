// Lamps: pictures that look like buttons and show a state. They cannot be pressed. The XPM colour
// "background" of the picture becomes the X resource selectColor when the lamp is lit, unselectColor when it
// is not, and the background of the control when it is greyed.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/display/picture.h"

class zLamp : public zControl {
  public:
    zLamp(Widget board, const zRect& place, const zControlRow& row);

    // Lit lamps look pressed. Sends no request if the state is the same.
    void check(bool on);
    bool checked() const;
    void grey(bool on) override { greySensitive(on); }
};
