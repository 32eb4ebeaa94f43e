#include "ui/mybitmapbutton.h"

#include "model/tvtypes.h"

#include <fmt/format.h>

void myBitmapButton::paint(LampLook look) {
    look_ = look;
    lamp_.enable(look != LampLook::greyed);
    lamp_.check(look == LampLook::lit);
}

void myBitmapButton::say(const LampWords& words) {
    words_ = words;
    std::string detail = words.words;
    if (detail == textOfUnknown)
        detail = fmt::format("unknown state {}", words.code);
    else if (words.code != LampWords::noCode)
        detail += fmt::format(", state {}", words.code);
    board_.setTooltipDetail(lamp_, detail);
}
