// Lamps of live values.
#pragma once

#include "toolkit/controls/lamp.h"

enum class LampLook { greyed, unlit, lit };

// Of a service. One that has not answered is taken for absent.
inline LampLook serviceLook(bool present, bool up) {
    return !present ? LampLook::greyed : up ? LampLook::lit : LampLook::unlit;
}

class myBitmapButton {
  public:
    // Dresses a lamp of a layout, which must outlive this object. Greyed at first.
    explicit myBitmapButton(zLamp& lamp) : lamp_(lamp) { paint(LampLook::greyed); }

    // The look that stands already costs nothing.
    void show(LampLook look) {
        if (look != look_) paint(look);
    }

  private:
    void paint(LampLook look);

    zLamp& lamp_;
    LampLook look_ = LampLook::greyed;
};
