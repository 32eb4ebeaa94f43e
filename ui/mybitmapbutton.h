// Lamps that show the state of a service or an alarm.
#pragma once

#include "toolkit/controls/lamp.h"

enum class LampLook { greyed, unlit, lit };

// The look for a service. No answer counts as absent.
inline LampLook serviceLook(bool present, bool up) {
    return !present ? LampLook::greyed : up ? LampLook::lit : LampLook::unlit;
}

class myBitmapButton {
  public:
    // Wraps a lamp of a layout, which must outlive this object. The lamp is greyed at first.
    explicit myBitmapButton(zLamp& lamp) : lamp_(lamp) { paint(LampLook::greyed); }

    // Setting the same look again costs nothing.
    void show(LampLook look) {
        if (look != look_) paint(look);
    }

  private:
    void paint(LampLook look);

    zLamp& lamp_;
    LampLook look_ = LampLook::greyed;
};
