// How text fields look, and those of drop-down lists. Inside the toolkit only.
#pragma once

#include "toolkit/display/widget.h"

class zFieldLook {
  public:
    // From now on the text begins where those of all fields begin, and the caret is drawn while the field has
    // the focus only. The field must outlive this object.
    explicit zFieldLook(Widget field);

    // A greyed field is as grey as what is around it, not white as one to type into.
    void grey(bool on);

  private:
    Widget field_;
    unsigned long usual_ = 0;  // its background
};
