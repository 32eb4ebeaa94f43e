#include "ui/stats/statspage.h"

void showLamp(zLamp& lamp, LampLook look) {
    const bool on = look != LampLook::greyed;
    if (lamp.enabled() != on) lamp.enable(on);
    lamp.check(look == LampLook::lit);
}

ServiceLamp::ServiceLamp(zLamp& lamp) : lamp_(lamp) {
    lost();
}

void ServiceLamp::show(std::uint64_t state, LampLook look) {
    if (state == state_) return;
    state_ = state;
    look_ = look;
    showLamp(lamp_, look);
}

void ServiceLamp::lost() {
    state_.reset();
    look_ = LampLook::greyed;
    showLamp(lamp_, look_);
}
