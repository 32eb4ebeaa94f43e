#include "model/tvtypes.h"

#include <gtest/gtest.h>

TEST(StateTexts, FirstAndLastCodeTheirNeighboursAndNotConfigured) {
    const struct {
        const char* (*text)(std::int16_t);
        std::int16_t first, last;
        const char *firstText, *lastText, *at255;
    } cases[] = {
        {MtuTypeToString, 1, 4, "1516", "18190", "XXXX"},
        {ElanTypeToString, 1, 2, "Ethernet", "Token Ring", "XXXX"},
        {BusStateToString, 0, 3, "Idle", "Active", "XXXX"},
        {SaalStateToString, 0, 9, "SSCOP Idle", "Data transfer ready", "SSCOP Not configured"},
        {SigStateToString, 0, 1, "Signalling Disconnected", "Signalling Ready", "Signalling Not configured"},
        {IlmiStateToString, 0, 3, "ILMI Disabled", "ILMI Static Registration", "ILMI Not configured"},
        {LmacStateToString, 0, 5, "Unused MAC entry", "Reverifying connection", "XXXX"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(c.text(c.first), c.firstText);
        EXPECT_STREQ(c.text(c.last), c.lastText);
        EXPECT_STREQ(c.text(255), c.at255);
        for (int code = c.first; code <= c.last; ++code)
            EXPECT_STRNE(c.text(static_cast<std::int16_t>(code)), "XXXX") << code;
        for (const int other : {-1, c.first - 1, c.last + 1, -32768})
            EXPECT_STREQ(c.text(static_cast<std::int16_t>(other)), "XXXX") << other;
    }
    EXPECT_STREQ(SaalStateToString(3), "Outgoing disconnection pending");
    EXPECT_STREQ(LmacStateToString(3), "Waiting for ARP response");
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
