// What is made of a save that was killed, by whoever takes the lock next.
#include "administrator.h"
#include "change/fileset.h"
#include "change/saverecord.h"
#include "tests/support/failingfiles.h"
#include "tests/support/logsocket.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr const char *parameters = "/etc/atm/tvconf", *list = "/etc/atm/pvcconf0.0";

struct Recovery : testing::Test {
    SampleRoot root;

    platform::HostPath at(const char* name) const { return {root.at(name).string()}; }
    // The process has written its copies and the record, and was killed.
    void leave(const std::vector<SaveStep>& steps) const {
        root.write("/etc/atm/.tarvolin-save", *saveRecordText(steps));
        fs::permissions(root.at("/etc/atm/.tarvolin-save"), fs::perms(0600));
    }
    SaveStep replacement(const char* name, const std::string& content) const {
        SaveStep step{at(name), ".left.tv0", contentHash(root.read(name)), contentHash(content), {}};
        root.write("/etc/atm/.left.tv0", content);
        return step;
    }
    std::vector<std::string> recover() const {
        std::vector<std::string> notes;
        EXPECT_EQ(recoverFiles(at("/etc/atm/.tarvolin-save"), notes), 0);
        return notes;
    }
};

}  // namespace

// The very file is removed, not one that somebody has made since with the same entries.
TEST_F(Recovery, RemovesTheFileThatTheSaveWouldHaveRemoved) {
    const fs::path file = root.at(list);
    const std::string content = "[PVC\n";
    const struct {
        const char* what;
        std::function<void()> meanwhile;
        bool removed;
    } cases[] = {
        {"nothing", [] {}, true},
        {"another mode", [&] { fs::permissions(file, fs::perms(0640)); }, true},
        {"a further name", [&] { fs::create_hard_link(file, root.at("/etc/atm/further")); }, true},
        {"made anew",
         [&] {
             fs::rename(file, root.at("/etc/atm/old"));
             root.write(list, content);
         },
         false},
        {"another content", [&] { root.write(list, content + "#\n"); }, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove(file);
        root.write(list, content);
        struct stat status {};
        ASSERT_EQ(::stat(file.c_str(), &status), 0);
        leave({{at(list), {}, contentHash(content), noContent, fileIdentity(status)}});
        c.meanwhile();
        EXPECT_THAT(recover(), ElementsAre(HasSubstr(c.removed ? "brought up to date" : "left alone")));
        EXPECT_NE(root.exists(list), c.removed);
        fs::remove(root.at("/etc/atm/further"));
    }
}

// Twice, since a kept version is nobody's to replace.
TEST_F(Recovery, TheSavesVersionOfAnEditedFileStaysBesideIt) {
    for (const char* kept : {"/etc/atm/pvcconf0.0.unsaved", "/etc/atm/pvcconf0.0.unsaved2"}) {
        const std::string content = std::string("of the save ") + kept;
        leave({replacement(list, content)});
        root.write(list, "edited before " + content);
        EXPECT_THAT(recover(), ElementsAre(root.at(list).string() +
                                           " was changed since an interrupted save, and left "
                                           "alone. The save's version is in " +
                                           root.at(kept).string() + "."));
        EXPECT_EQ(root.read(list), "edited before " + content);
        EXPECT_EQ(root.read(kept), content);
    }
}

// What cannot be kept is not given up: the next one who takes the lock tries again.
TEST_F(Recovery, AVersionThatCannotBeKeptHoldsItUp) {
    leave({replacement(list, "of the save")});
    root.write(list, "edited");
    std::vector<std::string> notes;
    {
        FailingFiles failing;
        failing.failAt(1, EIO, FileCall::rename);
        EXPECT_EQ(recoverFiles(at("/etc/atm/.tarvolin-save"), notes), EIO);
    }
    EXPECT_THAT(recover(), ElementsAre(HasSubstr("pvcconf0.0.unsaved.")));
    EXPECT_EQ(root.read("/etc/atm/pvcconf0.0.unsaved"), "of the save");
}

TEST_F(Recovery, WhatItPutsIntoForceIsToldToSyslog) {
    const LogSocket log(root);
    std::string content = root.read(parameters);
    content.replace(content.find("engineering"), 11, "other");
    leave({replacement(parameters, content)});
    const Administrator next;
    EXPECT_THAT(log.takeLines(),
                ElementsAre(HasSubstr("recovery="),
                            "change=none key=adapter1/lec1.elanName old=engineering new=other resp=unknown "
                            "user=root result=\"completed later\""));
}
