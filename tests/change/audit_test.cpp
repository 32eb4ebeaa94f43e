// What the manifest and syslog say of a save.
#include "change/audit.h"
#include "change/manifest.h"
#include "tests/support/logsocket.h"

using platform::LogLevel;
using testing::ElementsAre;

namespace {

ChangeRecord fullRecord() {
    ChangeRecord record;
    record.display = ":0.0";
    record.keys = {{"adapter1/lec2.mtu", "1516", "4544"},
                   {"adapter1/lec3.elan_name", "", "a \"b\"\n\xe9 resp=0"},
                   {"adapter1/signalling.uni_version", "30", "31"},
                   {"adapter2.x/lec0.mtu", "1", "2"}};
    record.lists = {{"adapter1/lec2.pvcs", {"VC 200", "VC 201"}, {"VC 7"}},
                    {"adapter1/ip.pvcs", {}, {"VC 9"}}};
    record.requests = {{"adapter1/lec2", "LEC_PVC_ADD", "PVC 0 / 200", RequestResult::taken, 0},
                       {"adapter1/lec2", "LEC_PVC_ADD", "PVC 0 / 201", RequestResult::refused, 17},
                       {"adapter1/lec2", "LEC_DISABLE", "", RequestResult::taken, 5},
                       {"adapter1/lec2", "LEC_INIT", "", RequestResult::taken, 0},
                       {"adapter1/lec3", "LEC_DISABLE", "", RequestResult::unanswered, 207},
                       {"adapter1/lec3", "LEC_INIT", "", RequestResult::notSent, 0},
                       {"adapter2.x/lec0", "LEC_INIT", "", RequestResult::notSent, 0}};
    record.takenOverKeys = {{"adapter2/lec0.mtu", "1", "2"}};
    record.takenOverLists = {{"adapter2/lec0.pvcs", {"VC 1"}, {}}};
    record.from = "10.1.2.3";
    record.note = "for the \xe4 lab";
    record.notes = {"A note."};
    return record;
}

std::vector<std::string> textsOf(const std::vector<AuditLine>& lines, LogLevel level) {
    std::vector<std::string> texts;
    for (const AuditLine& line : lines)
        if (line.level == level) texts.push_back(line.text);
    return texts;
}

}  // namespace

TEST(Audit, ALineForEachKeyAndListAndForEachRequestThatWasNotTaken) {
    ChangeRecord record = fullRecord();
    const auto lines = auditLines(record, "0042", "root");
    EXPECT_THAT(
        textsOf(lines, LogLevel::notice),
        ElementsAre(
            "change=0042 key=adapter1/lec2.mtu old=1516 new=4544 resp=0 user=root result=ok",
            R"(change=0042 key=adapter1/lec3.elan_name old="" new="a \"b\"\x0a\xe9 resp=0" )"
            "resp=unanswered user=root result=ok",
            "change=0042 key=adapter1/signalling.uni_version old=30 new=31 resp=none user=root result=ok",
            "change=0042 key=adapter2.x/lec0.mtu old=1 new=2 resp=unsent user=root result=ok",
            "change=0042 key=adapter1/lec2.pvcs added=2 removed=1 resp=17 user=root result=ok",
            "change=0042 key=adapter1/ip.pvcs added=0 removed=1 resp=none user=root result=ok"));
    EXPECT_THAT(textsOf(lines, LogLevel::warning),
                ElementsAre("change=0042 request=LEC_PVC_ADD service=adapter1/lec2 subject=\"PVC 0 / 201\" "
                            "resp=17 user=root result=refused",
                            "change=0042 request=LEC_DISABLE service=adapter1/lec3 resp=unanswered user=root "
                            "result=unanswered"));

    record.result = "No space left on device";
    const auto failed = auditLines(record, "none", "a b");
    EXPECT_THAT(textsOf(failed, LogLevel::notice), testing::IsEmpty());
    EXPECT_EQ(failed.size(), lines.size());
    EXPECT_EQ(failed[0].text, "change=none key=adapter1/lec2.mtu old=1516 new=4544 resp=0 user=\"a b\" "
                              "result=\"No space left on device\"");

    const TempRoot root;
    const LogSocket daemon(root);
    audit(record, "0042");
    EXPECT_EQ(daemon.take().size(), lines.size());
}

// manifest.json beside this file is what it has to be.
TEST(Manifest, HoldsEverythingInAsciiAndKeepsOddTextsReadable) {
    ::setenv("TZ", "UTC", 1);
    ChangeRecord record = fullRecord();
    record.keys.resize(2);
    record.lists.resize(1);
    record.requests.erase(record.requests.begin() + 2, record.requests.begin() + 5);
    record.requests.resize(3);
    const Manifest manifest{.number = "0042",
                            .time = 0,
                            .invoker = {{0, "root"}, platform::Account{1000, ""}, "an\na", {}},
                            .host = "ws1",
                            .files = {{"/etc/atm/tvconf", "1-tvconf", "abc", "100644 0 12"}}};
    const std::string text = manifestText(manifest, record);
    EXPECT_EQ(text, testFile("change/manifest.json"));

    const auto read = readManifest(text);
    ASSERT_TRUE(read);
    Manifest same = manifest;
    same.files = read->manifest.files;
    EXPECT_EQ(manifestText(same, read->record), text);
    EXPECT_EQ(read->time, "1970-01-01T00:00:00+00:00");
    EXPECT_EQ(read->manifest.number + read->manifest.invoker.user.name, "0042root");
    for (const char* none : {"", "{", "[]", "7", R"({"format":2})"}) EXPECT_FALSE(readManifest(none)) << none;
    EXPECT_TRUE(readManifest(R"({"format":1,"files":7,"keys":[{},[]],"requests":null,"user":"root"})"));
    ::unsetenv("TZ");
}
