// What a save leaves in the history, and that the history never stops a save.
#include "change/history.h"
#include "platform/files.h"
#include "tests/support/failingfiles.h"
#include "tests/support/logcapture.h"
#include "tests/support/logsocket.h"

#include <sys/stat.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* history = "/var/lib/tarvolin/history";

// The system's files, perhaps without links, and in front of them those of a test.
struct Files {
    explicit Files(bool links) {
        if (!links) system.failAt(1, EXDEV, FileCall::link, true);
    }
    FailingFiles system, calls;
};

std::vector<FileAtRisk> named(std::initializer_list<const char*> names) {
    std::vector<FileAtRisk> result;
    for (const char* name : names) result.push_back({name, platform::hostPath(name), {}});
    return result;
}

// As the save does: renames another file over this one.
void replace(const TempRoot& root, const char* name, const char* content) {
    root.write("/etc/new", content);
    fs::rename(root.at("/etc/new"), root.at(name));
}

std::string place(std::string_view entry, std::string_view name = "") {
    return fmt::format("{}/{}{}{}", history, entry, name.empty() ? "" : "/", name);
}

std::vector<std::string> namesIn(const TempRoot& root, std::string_view directory) {
    std::vector<std::string> names;
    if (root.exists(directory))
        for (const auto& entry : fs::directory_iterator(root.at(directory)))
            names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

unsigned modeOf(const TempRoot& root, std::string_view path) {
    struct stat found {};
    EXPECT_EQ(::stat(root.at(path).c_str(), &found), 0) << path;
    return found.st_mode & 07777;
}

std::string oneEntry() {
    HistoryEntry entry;
    entry.begin({});
    entry.finish({});
    return entry.number();
}

}  // namespace

TEST(History, AnEntryHoldsTheFilesAsTheyWere) {
    const TempRoot root;
    const std::vector<std::pair<const char*, const char*>> before{
        {"/srv/atm/tvconf", "linked 1"}, {"/srv/atm/list", "list 1"}, {"/etc/atm/list", "other list 1"}};
    for (const auto& [name, content] : before) root.write(name, content);
    const char* const stored[] = {"1-tvconf", "2-list", "3-list"};
    fs::create_symlink("../../srv/atm/tvconf", root.at("/etc/atm/tvconf"));
    const auto files = named({"/etc/atm/tvconf", "/srv/atm/list", "/etc/atm/list", "/etc/atm/new \n%"});
    for (const bool links : {true, false}) {
        const Files system(links);
        const auto written = fs::file_time_type::clock::now() - std::chrono::hours(1);
        fs::last_write_time(root.at("/srv/atm/list"), written);
        HistoryEntry entry;
        entry.begin(files);
        const std::string number = links ? "0001" : "0002";
        ASSERT_EQ(entry.number(), number);
        for (const auto& [name, content] : before) replace(root, name, "after");
        entry.finish({});
        EXPECT_EQ(system.calls.count(FileCall::sync), links ? 1 : 4);
        EXPECT_EQ(system.calls.count(FileCall::rename), links ? 0 : 1);

        EXPECT_THAT(namesIn(root, place(number)), ElementsAre(stored[0], stored[1], stored[2], manifestName));
        for (std::size_t i = 0; i < before.size(); ++i)
            EXPECT_EQ(root.read(place(number, stored[i])), before[i].second);
        EXPECT_EQ(modeOf(root, place(number, "2-list")), 0644U);
        EXPECT_EQ(fs::last_write_time(root.at(place(number, "2-list"))), written);
        EXPECT_EQ(modeOf(root, place(number, manifestName)), 0600U);
        EXPECT_EQ(modeOf(root, place(number)), 0700U);
        EXPECT_THAT(root.read(place(number, manifestName)), HasSubstr(R"(
    {
      "name": "/etc/atm/list",
      "stored": "3-list",
      "after": "-",
      "rights": null
    },
    {
      "name": "/etc/atm/new \\x0a%",
      "stored": null,
      "after": "-",
      "rights": null
    }
)"));
        for (const auto& [name, content] : before) replace(root, name, content);
    }
    EXPECT_EQ(modeOf(root, history), 0700U);
    EXPECT_EQ(modeOf(root, "/var/lib/tarvolin"), 0700U);
    EXPECT_EQ(modeOf(root, "/var/lib"), 0755U);

    HistoryEntry entry;
    entry.begin(files);
    EXPECT_EQ(entry.number(), "0003");
    entry.drop();
    entry.finish({});
    EXPECT_EQ(entry.number(), "none");
    EXPECT_THAT(namesIn(root, history), ElementsAre("0001", "0002"));
}

TEST(History, WhateverFailsTheSaveGoesOnAndItIsSaidOnce) {
    for (const bool links : {true, false}) {
        for (const int error : {ENOSPC, EACCES}) {
            int k = 1, lost = 0;
            for (bool failed = true; failed; ++k) {
                const TempRoot root;
                const LogSocket daemon(root);
                root.write("/etc/atm/tvconf", "before");
                LogCapture log;
                HistoryEntry entry;
                {
                    Files system(links);
                    system.calls.failAt(k, error);
                    entry.begin(named({"/etc/atm/tvconf"}));
                    entry.finish({});
                    failed = system.calls.failed();
                }
                const std::string which = fmt::format("links {} call {}\n{}", links, k, log.text);
                EXPECT_EQ(root.read("/etc/atm/tvconf"), "before") << which;
                const bool begun = entry.number() == "0001";
                const bool whole = begun && root.exists(place("0001", manifestName));
                if (begun) {
                    EXPECT_EQ(root.read(place("0001", "1-tvconf")), "before") << which;
                } else {
                    EXPECT_THAT(namesIn(root, history), IsEmpty()) << which;
                }
                EXPECT_TRUE(whole || !root.exists(place("0001", "manifest.json.new"))) << which;
                const auto lines = std::ranges::count(log.text, '\n');
                EXPECT_EQ(daemon.take().size(), static_cast<std::size_t>(lines)) << which;
                EXPECT_TRUE(whole ? lines <= 1 : lines == 1) << which;
                lost += !whole;
            }
            EXPECT_GT(k, 20);
            EXPECT_GT(lost, 10);
        }
    }
}

TEST(History, TheNewestStayAndNothingElseIsTouched) {
    const TempRoot root;
    root.write("/srv/away/kept", "");
    EXPECT_EQ(oneEntry(), "0001");
    const std::vector<std::string> others{"0000", "12a", "-3", "x", "0003.old", "1234567890"};
    for (const std::string& name : others) root.write(place(name, "kept"), "");
    fs::create_directory_symlink("/srv/away", root.at(place("0002")));
    root.write(place("0003"), "no directory");
    root.write(place("0004", "1-tvconf"), "");  // of a process that was killed
    root.write(place("0004", "manifest.json.new"), "{");
    fs::create_directory_symlink("/srv/away", root.at(place("0004", "2-away")));
    EXPECT_EQ(oneEntry(), "0005");
    LogCapture log;
    for (int i = 6; i <= 53; ++i) EXPECT_EQ(oneEntry(), fmt::format("{:04}", i));
    EXPECT_TRUE(root.exists(place("0004", "1-tvconf")));
    EXPECT_EQ(oneEntry(), "0054");
    EXPECT_FALSE(root.exists(place("0001")) || root.exists(place("0004")));
    EXPECT_TRUE(fs::is_symlink(root.at(place("0002"))));
    EXPECT_EQ(root.read(place("0003")), "no directory");
    EXPECT_TRUE(root.exists("/srv/away/kept"));
    for (const std::string& name : others) EXPECT_TRUE(root.exists(place(name, "kept"))) << name;
    EXPECT_EQ(log.text, "");

    fs::create_directories(root.at(place("9999")));
    EXPECT_EQ(oneEntry(), "10000");
    EXPECT_EQ(oneEntry(), "10001");
    fs::create_directories(root.at(place("0006", "of somebody's")) / "own");
    fs::create_directories(root.at(place("0005", "of somebody's")) / "own");
    EXPECT_EQ(oneEntry(), "10002");
    EXPECT_THAT(log.text, HasSubstr(fmt::format("History - {}: Directory not empty\n", place("0005"))));
}

// The directory and the manifest of the oldest are used again, of which a backup may have further names.
TEST(History, TheOldestBecomesTheNewest) {
    const TempRoot root;
    root.write("/etc/atm/tvconf", "as it was");
    for (int i = 1; i <= 50; ++i) oneEntry();
    fs::create_hard_link(root.at(place("0001", manifestName)), root.at("/backup"));
    const std::string backup = root.read("/backup");
    ChangeRecord record;
    record.result = "saved";
    for (const bool saved : {true, false, true}) {
        HistoryEntry entry;
        entry.begin(named({"/etc/atm/tvconf"}));
        EXPECT_EQ(namesIn(root, history).size(), 50U);
        if (saved)
            entry.finish(record);
        else
            entry.drop();
        EXPECT_EQ(namesIn(root, history).size(), saved ? 50U : 49U);
    }
    EXPECT_EQ(root.read("/backup"), backup);
    EXPECT_EQ(namesIn(root, history).front(), "0003");
    for (const char* number : {"0051", "0052"}) {
        EXPECT_THAT(namesIn(root, place(number)), ElementsAre("1-tvconf", manifestName));
        EXPECT_THAT(root.read(place(number, manifestName)), HasSubstr("\"result\": \"saved\"\n}\n"));
    }
}

TEST(History, AManifestThatALossOfPowerLeftAsADraftGetsItsName) {
    for (const bool whole : {true, false}) {
        const TempRoot root;
        oneEntry();
        const std::string draft = place("0001", "manifest.json.new");
        const std::string text = root.read(place("0001", manifestName));
        fs::remove(root.at(place("0001", manifestName)));
        const std::size_t cut = text.find("\"result\"");
        root.write(draft, whole ? text : text.substr(0, cut));
        oneEntry();
        EXPECT_EQ(root.exists(place("0001", manifestName)), whole);
        EXPECT_EQ(root.exists(draft), !whole);
        EXPECT_EQ(root.read(whole ? place("0001", manifestName) : draft).size(), whole ? text.size() : cut);

        fs::remove(root.at(place("0002", manifestName)));
        root.write(place("0002", "manifest.json.new"), text);
        oneEntry();
        EXPECT_FALSE(root.exists(place("0002", manifestName))) << "it is that of another save";
    }
}

TEST(History, ADraftThatIsALinkOrTooLargeStaysOne) {
    for (const bool link : {true, false}) {
        const TempRoot root;
        oneEntry();
        const std::string draft = place("0001", "manifest.json.new");
        const std::string text = root.read(place("0001", manifestName));
        fs::remove(root.at(place("0001", manifestName)));
        root.write("/elsewhere", text);
        if (link) {
            fs::create_symlink(root.at("/elsewhere"), root.at(draft));
        } else {
            root.write(draft, text);  // a whole manifest, and a hole behind it
            fs::resize_file(root.at(draft), largestManifest + 1);
        }
        oneEntry();
        EXPECT_FALSE(root.exists(place("0001", manifestName))) << link;
        EXPECT_TRUE(fs::exists(fs::symlink_status(root.at(draft)))) << link;
    }
}

TEST(History, ADirectoryThatOthersCanChangeIsRefused) {
    for (const char* directory : {"/var/lib/tarvolin", history}) {
        const TempRoot root;
        const LogSocket daemon(root);
        LogCapture log;
        fs::create_directories(root.at(history));
        const auto refused = [&](const char* reason) {
            EXPECT_EQ(oneEntry(), "none") << directory;
            EXPECT_EQ(log.take(), fmt::format("History - {}: {}\n", history, reason));
            EXPECT_THAT(daemon.takeLines(), ElementsAre(testing::StartsWith(fmt::format(
                                                "change=none history=\"{}: {}\" user=", history, reason))));
        };
        for (const mode_t mode : {0777U, 0770U, 0702U}) {
            ::chmod(root.at(directory).c_str(), mode);
            refused("Operation not permitted");
        }
        ::chmod(root.at(directory).c_str(), 0755);
        EXPECT_EQ(oneEntry(), "0001");
        if (::geteuid() == 0) {
            ASSERT_EQ(::chown(root.at(directory).c_str(), 12, 34), 0);
            refused("Operation not permitted");
        }
        fs::remove_all(root.at(directory));
        root.write(directory, "no directory");
        refused("Not a directory");
    }
}
