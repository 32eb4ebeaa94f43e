#include "model/tvtypes.h"

#include <gtest/gtest.h>

TEST(StateTexts, UnknownCodesReadXXXX) {
    EXPECT_STREQ(MtuTypeToString(0), "XXXX");
    EXPECT_STREQ(MtuTypeToString(4), "18190");
    EXPECT_STREQ(SaalStateToString(-1), "XXXX");
}
