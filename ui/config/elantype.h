// The choice of an ELAN type with two radio buttons. A type that is neither Ethernet nor Token Ring shows as
// Token Ring.
#pragma once

#include "platform/debuglog.h"
#include "ui/config/confids.h"

#include <cstdint>
#include <string_view>

constexpr std::int16_t ethernetElan = 1, tokenRingElan = 2;

inline int elanTypeButton(std::int16_t type) {
    return type == ethernetElan ? ethernetRB : tokenRingRB;
}

// Stores the type of the chosen button. Logs the replacement of a type that was neither of the two.
inline void storeElanType(std::int16_t& type, int button, std::string_view service) {
    const std::int16_t chosen = button == ethernetRB ? ethernetElan : tokenRingElan;
    if (type != ethernetElan && type != tokenRingElan)
        tvlog << service << " ELAN type " << type << " becomes " << chosen << std::endl;
    type = chosen;
}
