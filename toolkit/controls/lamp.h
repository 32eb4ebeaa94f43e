// Lamps: pictures that look like buttons and show a state. They cannot be pressed. The parts of the picture that have
// its background colour show the X resource selectColor when the lamp is lit, unselectColor when it is not, and nothing
// when it is greyed.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/display/picture.h"

class zLamp : public zControl {
  public:
    zLamp(Widget board, const zRect& place, const zControlRow& row);

    // On: lit and pressed in. Touches nothing when it looks so already.
    void check(bool on);
    bool checked() const;
};
