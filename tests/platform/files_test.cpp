#include "platform/files.h"
#include "tests/support/temproot.h"

using platform::files;
using platform::hostPath;

TEST(Files, AnotherNameForASymbolicLinkIsOneToo) {
    const TempRoot root;
    std::filesystem::create_symlink("/etc/passwd", root.at("/soft"));
    ASSERT_EQ(files().link(hostPath("/soft"), hostPath("/soft2")), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(root.at("/soft2")));
}
