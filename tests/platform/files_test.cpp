#include "platform/files.h"
#include "tests/support/temproot.h"

using platform::files;
using platform::hostPath;

TEST(Files, DirectoriesAreMadeListedAndRemovedAndLinksNotFollowed) {
    const TempRoot root;
    ASSERT_EQ(files().makeDirectory(hostPath("/d"), 0700), 0);
    EXPECT_EQ(std::filesystem::status(root.at("/d")).permissions(), std::filesystem::perms::owner_all);
    root.write("/d/.a b", "one");
    ASSERT_EQ(files().link(hostPath("/d/.a b"), hostPath("/d/2")), 0);
    std::filesystem::create_directory_symlink("/etc", root.at("/d/away"));
    std::filesystem::create_symlink(".a b", root.at("/d/soft"));
    ASSERT_EQ(files().link(hostPath("/d/soft"), hostPath("/d/soft2")), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(root.at("/d/soft2")));

    std::vector<std::string> names{"of before"};
    ASSERT_EQ(files().list(hostPath("/d"), names), 0);
    EXPECT_THAT(names, testing::UnorderedElementsAre(".a b", "2", "away", "soft", "soft2"));
    EXPECT_EQ(files().remove(hostPath("/d")), -1);
    EXPECT_TRUE(errno == ENOTEMPTY || errno == EEXIST);
    for (const char* notListed : {"/d/away", "/d/2", "/nothing"})
        EXPECT_EQ(files().list(hostPath(notListed), names), -1) << notListed;

    for (const char* name : {"/d/.a b", "/d/2", "/d/away", "/d/soft", "/d/soft2", "/d"})
        EXPECT_EQ(files().remove(hostPath(name)), 0) << name;
    EXPECT_FALSE(root.exists("/d"));
    EXPECT_TRUE(std::filesystem::exists("/etc/passwd"));
}
