// The choice of an ELAN type with two radio buttons. What is not Ethernet counts as Token Ring.
#pragma once

#include "ui/config/confids.h"

#include <cstdint>

constexpr std::int16_t ethernetElan = 1, tokenRingElan = 2;

inline int elanTypeButton(std::int16_t type) {
    return type == ethernetElan ? ethernetRB : tokenRingRB;
}

inline std::int16_t elanTypeOf(int button) {
    return button == ethernetRB ? ethernetElan : tokenRingElan;
}
