#include "ui/stats/statspage.h"

void StatusLamp::paint(LampLook look) {
    look_ = look;
    lamp_.enable(look != LampLook::greyed);
    lamp_.check(look == LampLook::lit);
}

ServiceLamp::ServiceLamp(zLamp& lamp) : lamp_(lamp) {
    lost();
}

void ServiceLamp::show(std::uint64_t state, LampLook look) {
    if (state == state_) return;
    state_ = state;
    look_ = look;
    lamp_.show(look);
}

void ServiceLamp::lost() {
    state_.reset();
    look_ = LampLook::greyed;
    lamp_.show(look_);
}
