#include "platform/root.h"

TEST(Root, PrefixIsPutInFrontOnlyWhenSetAndNotEmpty) {
    for (const auto& [root, expected] :
         {std::pair("", "/dev/li"), {"/tmp/r", "/tmp/r/dev/li"}, {"/tmp/r//", "/tmp/r/dev/li"}}) {
        ::setenv("TARVOLIN_ROOT", root, 1);
        EXPECT_EQ(platform::hostPath("/dev/li").text, expected);
    }
    ::unsetenv("TARVOLIN_ROOT");
    EXPECT_EQ(platform::hostPath("/dev/li").text, "/dev/li");
}
