// What a copy takes from its file, and which copies are removed.
#include "change/copy.h"

#include "change/fileset.h"
#include "tests/support/failingfiles.h"
#include "tests/support/temproot.h"

#include <sys/acl.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string aclOf(const fs::path& path) {
    const acl_t acl = ::acl_get_file(path.c_str(), ACL_TYPE_ACCESS);
    char* text = ::acl_to_text(acl, nullptr);
    std::string result = text ? text : "";
    ::acl_free(text);
    ::acl_free(acl);
    std::ranges::replace(result, '\n', ' ');
    return result;
}

bool setAcl(const fs::path& path, acl_type_t type, const char* text) {
    const acl_t acl = ::acl_from_text(text);
    const bool good = ::acl_set_file(path.c_str(), type, acl) == 0;
    ::acl_free(acl);
    return good;
}

std::string attribute(const fs::path& path, const char* name) {
    char value[32];
    const ssize_t length = ::getxattr(path.c_str(), name, value, sizeof value);
    return length < 0 ? "(none)" : std::string(value, static_cast<std::size_t>(length));
}

SaveOutcome replace(const TempRoot& root, const char* name, const char* content) {
    FileEdit edit{name, {}, true, content};
    EXPECT_EQ(platform::files().resolve(platform::hostPath(name), edit.place), 0);
    edit.exists = fs::exists(edit.place.text);
    return replaceFiles({root.at("/etc/atm/.tarvolin-save").string()}, std::span(&edit, 1),
                        [] { return true; });
}

}  // namespace

TEST(Copy, TakesModeOwnerAclAndAttributesAndNoGroupGainsARight) {
    const TempRoot root;
    const fs::path file = root.at("/etc/atm/pvc"), directory = root.at("/etc/atm");
    root.write("/etc/atm/pvc", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    const bool superUser = ::geteuid() == 0;
    if (superUser) {
        ASSERT_EQ(::chown(file.c_str(), 12, 34), 0);
    }
    // What new files of the directory would get by themselves.
    if (!setAcl(directory, ACL_TYPE_DEFAULT, "u::rwx,g::rwx,g:99:rw,m::rwx,o::-") ||
        !setAcl(file, ACL_TYPE_ACCESS, "u::rw,u:77:r,g::-,m::r,o::-") ||
        ::setxattr(file.c_str(), "user.note", "kept", 4, 0) != 0)
        GTEST_SKIP() << "the file system of " << root.path() << " has no ACLs or attributes";
    const std::string acl = aclOf(file);

    ASSERT_EQ(replace(root, "/etc/atm/pvc", "new").state, SaveOutcome::State::done);
    struct stat now {};
    ASSERT_EQ(::stat(file.c_str(), &now), 0);
    EXPECT_EQ(root.read("/etc/atm/pvc"), "new");
    EXPECT_EQ(aclOf(file), acl);
    EXPECT_THAT(acl, testing::HasSubstr("user:77:r-- "));
    EXPECT_EQ(attribute(file, "user.note"), "kept");
    if (superUser) {
        EXPECT_EQ(now.st_uid * 100 + now.st_gid, 1234U);
        EXPECT_EQ(::setxattr(file.c_str(), "security.test", "label", 5, 0), 0);
        ASSERT_EQ(replace(root, "/etc/atm/pvc", "newer").state, SaveOutcome::State::done);
        EXPECT_EQ(attribute(file, "security.test"), "label");
    }
    // A value that cannot be taken.
    FailingFiles files;
    files.failAt(1, ENOTSUP, FileCall::takeAttributes);
    const SaveOutcome outcome = replace(root, "/etc/atm/pvc", "newest");
    EXPECT_EQ(outcome.error, ENOTSUP);
    EXPECT_EQ(outcome.state, SaveOutcome::State::asBefore);
    EXPECT_NE(root.read("/etc/atm/pvc"), "newest");
}

TEST(Copy, LinksAreFollowedAndStay) {
    const TempRoot root;
    root.write("/srv/atm/pvc", "old");
    fs::create_symlink("../../srv/atm/pvc", root.at("/etc/atm/pvc"));
    fs::create_symlink(root.at("/srv/atm/later"), root.at("/etc/atm/later"));  // to nothing
    fs::create_hard_link(root.at("/srv/atm/pvc"), root.at("/srv/second"));
    FailingFiles files;
    EXPECT_EQ(replace(root, "/etc/atm/pvc", "new").state, SaveOutcome::State::done);
    EXPECT_EQ(replace(root, "/etc/atm/later", "made").state, SaveOutcome::State::done);
    EXPECT_TRUE(fs::is_symlink(root.at("/etc/atm/pvc")) && fs::is_symlink(root.at("/etc/atm/later")));
    EXPECT_EQ(root.read("/srv/atm/pvc") + root.read("/srv/second") + root.read("/srv/atm/later"),
              "newoldmade");
    for (const FailingFiles::Call& call : files.calls())
        if (call.kind == FileCall::rename) {
            EXPECT_TRUE(call.path.starts_with(root.at("/srv/atm/.").string())) << call.path;
        }
}

TEST(Copy, CopiesAreRemovedWhenTheirProcessIsGone) {
    const TempRoot root;
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    const std::string number = fmt::format("{:x}", child);
    const struct {
        std::string name;
        bool goes;
    } files[] = {{".tvconf.tv" + number, true},
                 {".pvc.old.tv" + number, true},
                 {fmt::format(".tvconf.tv{:x}", ::getpid()), true},  // of a process that had this number
                 {fmt::format(".tvconf.tv{:x}", ::getppid()), false},
                 {".named.tv" + number, false},  // a list
                 {".tvconf.tv0" + number, false},
                 {"atmTV" + number, false},
                 {"tvconf", false},
                 {".tvconf.tv", false},
                 {".tvconf.tvx", false},
                 {".tv" + number, false},
                 {"pvc.tv" + number, false}};
    for (const auto& file : files) root.write("/etc/atm/" + file.name, "x");
    root.write("/etc/atm/tvconf", "PvcConfFile = /etc/atm/.named.tv" + number);
    root.write("/etc/atmTV" + number, "x");
    root.write("/etc/.x.tv" + number, "x");
    removeDeadCopies({root.at("/etc/atm").string()}, CopiesOf::saves);
    removeDeadCopies({root.at("/etc").string()}, CopiesOf::engine);
    removeDeadCopies({root.at("/none").string()}, CopiesOf::engine);
    for (const auto& file : files) EXPECT_EQ(root.exists("/etc/atm/" + file.name), !file.goes) << file.name;
    EXPECT_FALSE(root.exists("/etc/atmTV" + number));
    EXPECT_TRUE(root.exists("/etc/.x.tv" + number));
}

TEST(Copy, NamesFitWhateverTheFileIsCalled) {
    const std::string first(250, 'a'), second = first.substr(1) + 'b';
    EXPECT_LE(copyName({"/x/" + first}, CopyOf::oldContent).size(), 255U);
    EXPECT_NE(copyName({"/x/" + first}), copyName({"/x/" + second}));
}
