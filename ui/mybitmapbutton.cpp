#include "ui/mybitmapbutton.h"

void myBitmapButton::paint(LampLook look) {
    look_ = look;
    lamp_.enable(look != LampLook::greyed);
    lamp_.check(look == LampLook::lit);
}
