#include "model/tvtypes.h"

#include <gtest/gtest.h>

TEST(StateTexts, EveryCodeAndNoOther) {
    const struct {
        const char* (*text)(std::int16_t);
        std::int16_t code;
        const char* expected;
    } cases[] = {
        {MtuTypeToString, 0, "XXXX"},
        {MtuTypeToString, 1, "1516"},
        {MtuTypeToString, 2, "4544"},
        {MtuTypeToString, 3, "9234"},
        {MtuTypeToString, 4, "18190"},
        {MtuTypeToString, 5, "XXXX"},
        {ElanTypeToString, 0, "XXXX"},
        {ElanTypeToString, 1, "Ethernet"},
        {ElanTypeToString, 2, "Token Ring"},
        {ElanTypeToString, 3, "XXXX"},
        {BusStateToString, -1, "XXXX"},
        {BusStateToString, 0, "Idle"},
        {BusStateToString, 1, "Signalling A"},
        {BusStateToString, 2, "Signalling B"},
        {BusStateToString, 3, "Active"},
        {BusStateToString, 4, "XXXX"},
        {SaalStateToString, -1, "XXXX"},
        {SaalStateToString, 0, "SSCOP Idle"},
        {SaalStateToString, 1, "Outgoing Connection Pending"},
        {SaalStateToString, 2, "Incoming Connection Pending"},
        {SaalStateToString, 3, "Outgoing disconnection pending"},
        {SaalStateToString, 4, "Outgoing resync pending"},
        {SaalStateToString, 5, "Incoming resync pending"},
        {SaalStateToString, 6, "Outgoing recovery pending"},
        {SaalStateToString, 7, "Incoming recovery pending"},
        {SaalStateToString, 8, "Recovery response pending"},
        {SaalStateToString, 9, "Data transfer ready"},
        {SaalStateToString, 10, "XXXX"},
        {SaalStateToString, 255, "SSCOP Not configured"},
        {SigStateToString, 0, "Signalling Disconnected"},
        {SigStateToString, 1, "Signalling Ready"},
        {SigStateToString, 2, "XXXX"},
        {SigStateToString, 255, "Signalling Not configured"},
        {IlmiStateToString, 0, "ILMI Disabled"},
        {IlmiStateToString, 1, "ILMI Registering"},
        {IlmiStateToString, 2, "ILMI Registered"},
        {IlmiStateToString, 3, "ILMI Static Registration"},
        {IlmiStateToString, 4, "XXXX"},
        {IlmiStateToString, 255, "ILMI Not configured"},
        {LmacStateToString, 0, "Unused MAC entry"},
        {LmacStateToString, 1, "Waiting for VCC connection"},
        {LmacStateToString, 2, "Active"},
        {LmacStateToString, 3, "Waiting for ARP response"},
        {LmacStateToString, 4, "Waiting for InARP response"},
        {LmacStateToString, 5, "Reverifying connection"},
        {LmacStateToString, 6, "XXXX"},
    };
    for (const auto& c : cases) EXPECT_STREQ(c.text(c.code), c.expected) << c.code;
}

TEST(StateTexts, LampCodes) {
    const struct {
        std::int16_t code;
        int ilmi, saal, sig;
    } cases[] = {{-1, 1, 1, 1}, {0, 0, 1, 1}, {1, 1, 1, 2}, {2, 2, 1, 1},  {3, 2, 1, 1},
                 {7, 1, 1, 1},  {8, 1, 1, 1}, {9, 1, 2, 1}, {10, 1, 1, 1}, {255, 0, 0, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(IlmiStateToColor(c.code), c.ilmi) << c.code;
        EXPECT_EQ(SaalStateToColor(c.code), c.saal) << c.code;
        EXPECT_EQ(SigStateToColor(c.code), c.sig) << c.code;
    }
}
