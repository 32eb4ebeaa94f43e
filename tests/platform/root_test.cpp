#include "platform/root.h"

#include <cstdlib>
#include <gtest/gtest.h>

TEST(Root, PrefixIsPutInFrontOnlyWhenSetAndNotEmpty) {
    const struct {
        const char* root;
        const char* expected;
    } cases[] = {
        {nullptr, "/dev/li"}, {"", "/dev/li"}, {"/tmp/r", "/tmp/r/dev/li"}, {"/tmp/r//", "/tmp/r/dev/li"}};
    for (const auto& c : cases) {
        if (c.root)
            ::setenv("TARVOLIN_ROOT", c.root, 1);
        else
            ::unsetenv("TARVOLIN_ROOT");
        EXPECT_EQ(platform::hostPath("/dev/li").text, c.expected);
    }
    ::unsetenv("TARVOLIN_ROOT");
}
