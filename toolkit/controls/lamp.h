// Lamps: drawn signs (lampface.h) that show a state and cannot be pressed. Their glass has the X resource
// selectColor when the lamp is lit, unselectColor when it is not, and the background of the control when it
// is greyed. Signs are drawn in the foreground or the background, whichever stands out more.
#pragma once

#include "toolkit/controls/control.h"

class zLamp : public zControl {
  public:
    zLamp(Widget board, const zRect& place, const zControlRow& row);

    // Lit lamps look pressed. Sends no request if the state is the same.
    void check(bool on);
    bool checked() const;
    void grey(bool on) override { greySensitive(on); }
};
