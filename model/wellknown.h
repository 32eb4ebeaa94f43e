// The well-known address of the LAN Emulation standard's LECS, in the form in which fields show it.
#pragma once

struct AddressHalves {
    const char* networkPrefix;
    const char* esiSelector;
};

inline constexpr AddressHalves wellKnownAddress{"47:00:79:00:00:00:00:00:00:00:00:00:00",
                                                "00:A0:3E:00:00:01-00"};
