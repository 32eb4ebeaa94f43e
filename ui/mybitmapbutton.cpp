#include "ui/mybitmapbutton.h"

#include <fmt/format.h>

void myBitmapButton::paint(LampLook look) {
    look_ = look;
    lamp_.enable(look != LampLook::greyed);
    lamp_.check(look == LampLook::lit);
}

void myBitmapButton::say(const LampWords& words) {
    words_ = words;
    board_.setTooltipDetail(lamp_, words.code == LampWords::noCode
                                       ? words.words
                                       : fmt::format("{}, state {}", words.words, words.code));
}
