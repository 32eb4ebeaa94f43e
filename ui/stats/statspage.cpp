#include "ui/stats/statspage.h"

void StatusLamp::paint(LampLook look) {
    look_ = look;
    lamp_.enable(look != LampLook::greyed);
    lamp_.check(look == LampLook::lit);
}

void ServiceLamp::follow(bool answered, std::uint64_t state, bool present, bool up) {
    if (answered && state == state_) return;
    state_ = answered ? std::optional(state) : std::nullopt;
    look_ = !answered || !present ? LampLook::greyed : up ? LampLook::lit : LampLook::unlit;
    lamp_.show(look_);
}
