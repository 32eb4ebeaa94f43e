// Lamps: pictures that look like buttons and show a state. They cannot be pressed.
#pragma once

#include "toolkit/control.h"
#include "toolkit/picture.h"

class zLamp : public zControl {
  public:
    zLamp(Widget board, const zRect& place, const zControlRow& row);

    // On: pressed in. Touches nothing when it looks so already.
    void check(bool on);
    bool checked() const;
};
