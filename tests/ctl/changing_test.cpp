// Commands that change the configuration: what they print, send, write, and leave alone.
#include "tests/support/scribe.h"
#include "tests/support/simulator.h"
#include "tvctl.h"

#include <csignal>
#include <future>
#include <nlohmann/json.hpp>
#include <random>

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using Json = nlohmann::ordered_json;
using Texts = std::map<std::string, std::string>;

namespace {

constexpr const char* parameters = "/etc/atm/tvconf";

// 1,000 with TV_THOROUGH, fewer otherwise.
int rounds(int usual) {
    return std::getenv("TV_THOROUGH") ? 1000 : usual;
}

struct Changing : testing::Test {
    SampleRoot root;

    Texts files() const { return root.files("/etc/atm"); }
    std::string document(const std::string& json) const {
        root.write("/document", json);
        return root.at("/document").string();
    }
    Said apply(const std::string& json, const std::string& words = "") const {
        return tvctl("apply " + document(json) + " " + words);
    }
    bool hasHistory() const { return root.exists("/var/lib/tarvolin/history/0001"); }
};

std::string lastLine(const std::string& text) {
    const std::size_t end = text.empty() ? 0 : text.size() - 1;
    const std::size_t begin = text.rfind('\n', end ? end - 1 : 0);
    return text.substr(begin == text.npos ? 0 : begin + 1, end - (begin == text.npos ? 0 : begin + 1));
}

}  // namespace

TEST_F(Changing, OneValueDoesWhatItsFieldDoes) {
    const struct {
        const char *words, *changes;
    } cases[] = {
        {"adapter1/lec1.mtu=4544", "lec1.mtu 1516 4544; lec1.l3Mtu 1500 4544; "},
        {"adapter1/lec1.mtu=4544 adapter1/lec1.l3Mtu=1000", "lec1.mtu 1516 4544; lec1.l3Mtu 1500 1000; "},
        {"adapter1/lec2.mtu=1516", "lec2.mtu 4544 1516; "},
        {"adapter1/lec3.useLecs=true",
         "lec3.useLecs false true; lec3.networkPrefix \"47:09:99:00:00:00:00:00:00:a0:3e:01:01\" "
         "\"47:00:79:00:00:00:00:00:00:00:00:00:00\"; lec3.esiSelector \"00:a0:3e:00:00:11-12\" "
         "\"00:A0:3E:00:00:01-00\"; "},
        {"adapter1/lec1.networkPrefix=47.0005.80ff.e100.0000.f21a.2e4b",
         "lec1.networkPrefix \"47:00:79:00:00:00:00:00:00:00:00:00:00\" "
         "\"47:00:05:80:ff:e1:00:00:00:f2:1a:2e:4b\"; "},
        {"adapter1/lec1.l3Mtu=1500", ""},
    };
    for (const auto& c : cases) {
        const Said said = tvctl(std::string("--json set --dry-run ") + c.words);
        const Json json = Json::parse(said.out);
        std::string told;
        for (const Json& change : json["changes"])
            told += fmt::format("{} {} {}; ", change["where"].get<std::string>().substr(9),
                                change["old"].dump(), change["new"].dump());
        EXPECT_EQ(told, c.changes) << c.words;
        EXPECT_EQ(said.status, *c.changes ? 1 : 0);
    }
    EXPECT_FALSE(hasHistory());
}

TEST_F(Changing, WhatIsWrongChangesNothing) {
    const Texts before = files();
    const struct {
        int status;
        const char *words, *complaint;
    } cases[] = {
        {2, "set", "required"},
        {2, "set adapter1/lec1.mtu", "is not PATH.KEY=VALUE"},
        {2, "set adapter1/lec1.foo=1", "no setting adapter1/lec1.foo"},
        {2, "set adapter1/lec1.mac=00:00:00:00:00:00", "reading only"},
        {2, "set adapter1/lec1.pvcs=1", "is a list"},
        {2, "set adapter1/lec1.mtu=1516 adapter1/lec1.mtu=4544", "twice"},
        {2, "set adapter1/signalling.mtu=1516", "no setting"},
        {2, "set adapter1/nothing.mtu=1516", "is no path"},
        {10, "set adapter5/lec1.mtu=1516", "there is no adapter5"},
        {10, "set adapter1/lec5.mtu=1516", "there is no adapter1/lec5"},
        {10, "set adapter1/les0.mtu=1516", "there is no adapter1/les0"},
        {9, "set adapter1/lec1.mtu=1517", "takes 1516, 4544, 9234, 18190"},
        {9, "set adapter1/lec1.mtu='code 1'", "takes"},
        {9, "set adapter1/lec1.l3Mtu=32768", "takes 0 to 32767"},
        {9, "set adapter1/lec1.l3Mtu=-1", "takes 0 to 32767"},
        {9, "set adapter1/lec1.enabled=yes", "takes false, true"},
        {9, "set adapter1/lec1.elanName=a23456789b123456789c123456789d1", "at most 30"},
        {9, "set adapter1/lec1.elanName='a b'", "without blank"},
        {9, "set adapter1/lec1.networkPrefix=47:00", "adapter1/lec1.networkPrefix"},
        {9, "set adapter1/ip.address=300.1.1.1", "adapter1/ip.address"},
        {2, "pvc add adapter1/les1 8:0:20:1:2:3 vci 300", "has no pvcs"},
        {2, "pvc add adapter1/lec1 8:0:20:1:2:3", "vci"},
        {2, "pvc add adapter1/lec1 8:0:20:1:2:3 vci", "needs a number"},
        {2, "pvc add adapter1/lec1 8:0:20:1:2:3 vci 300 maybe", "no word of a PVC"},
        {2, "pvc add adapter1/lec1 8:0:20:1:2:3 vci 300 llc null", "encapsulation is given twice"},
        {9, "pvc add adapter1/lec1 8:0:20:1:2 vci 300", ""},
        {9, "pvc add adapter1/lec1 8:0:20:1:2:3 vci 65536", "takes 0 to 65535"},
        {9, "pvc add adapter1/lec1 8:0:20:1:2:3 vci 300 rate -1", "rate"},
        {8, "pvc add adapter1/lec1 8:0:20:1:2:3 vci 300", "there is no driver"},
        {10, "pvc delete adapter1/lec1 999 --file-only", "no PVC with VCI 999"},
        {10, "pvc delete adapter1/lec1 '[2]' --file-only", "there is no adapter1/lec1.pvcs[2]"},
        {2, "pvc modify adapter1/lec1 100 --file-only", "missing"},
        {10, "client delete adapter1/les1 00:a0:3e:00:00:77-00 --file-only", "has no client"},
        {9, "client add adapter1/les1 nonsense --file-only", ""},
        {2, "revert x", "no number"},
        {10, "revert 1", "no change 1"},
        {10, "confirm", "no change waits"},
        {2, "frobnicate", "no such command"},
        {2, "--timeout nan show", "no number of seconds"},
        {2, "set adapter1/lec1.mtu=4544 --confirm inf", "no number of seconds"},
        {2, "set $(printf '%0100000d' 7)", "..."},
        {2, "get adapter9/lec1.foo", "no setting"},
        {2, "show adapter9 foo", "no path"},
        {2, "pvc add adapter9/lec1 8:0:20:1:2:3 vci 300 maybe", "no word of a PVC"},
        {2, "set adapter9/lec1.mtu=1516 adapter1/lec1.foo=1", "no setting"},
        {2, "set --frobnicate adapter1/lec1.mtu=1516", ""},
    };
    for (const auto& c : cases)
        for (const bool json : {false, true}) {
            const Said said = tvctl(std::string(c.words) + (json ? " --json" : ""));
            EXPECT_EQ(said.status, c.status) << c.words;
            EXPECT_THAT(said.err, AllOf(StartsWith("tvctl: "), HasSubstr(c.complaint))) << c.words;
            EXPECT_EQ(std::ranges::count(said.err, '\n'), 1) << said.err;
            EXPECT_LT(said.err.size(), 400);
            if (json)
                EXPECT_EQ(Json::parse(said.out)["error"]["code"], c.status) << c.words;
            else
                EXPECT_EQ(said.out, "") << c.words;
        }
    EXPECT_EQ(files(), before);
    EXPECT_FALSE(hasHistory());
}

TEST_F(Changing, AnythingWrongInADocumentChangesNothing) {
    const Texts before = files();
    const struct {
        const char *json, *complaint;
    } cases[] = {
        {"", "no JSON"},
        {"nonsense", "no JSON"},
        {"[]", "object"},
        {"{}", "format"},
        {R"({"format":2})", "format"},
        {R"({"format":1,"format":1})", "twice"},
        {R"({"format":1,"adapter5":{}})", "adapter5"},
        {R"({"format":1,"adapter1":[]})", "adapter1"},
        {R"({"format":1,"adapter1":{"lec9":{}}})", "lec9"},
        {R"({"format":1,"adapter1":{"lec1":7}})", "adapter1/lec1"},
        {R"({"format":1,"adapter1":{"lec1":{"foo":1}}})", "foo"},
        {R"({"format":1,"adapter1":{"lec1":{"mtu":"4544"}}})", "takes a number"},
        {R"({"format":1,"adapter1":{"lec1":{"mtu":4544.0}}})", "takes a number"},
        {R"({"format":1,"adapter1":{"lec1":{"mtu":null}}})", "takes a number"},
        {R"({"format":1,"adapter1":{"lec1":{"enabled":1}}})", "true or false"},
        {R"({"format":1,"adapter1":{"lec1":{"l3Mtu":99999999999999999999}}})", "l3Mtu"},
        {R"({"format":1,"adapter1":{"lec1":{"mtu":4544,"mtu":4544}}})", "twice"},
        {R"({"format":1,"adapter1":{"lec1":{"mtu":4544}},"adapter2":{"lec1":{"mtu":1}}})",
         "adapter2/lec1.mtu"},
        {R"({"format":1,"adapter1":{"lec1":{"pvcs":{}}}})", "array"},
        {R"({"format":1,"adapter1":{"lec1":{"pvcs":[{"mac":"8:0:20:1:2:3"}]}}})", "vci"},
        {R"({"format":1,"adapter1":{"lec1":{"pvcs":[{"mac":"8:0:20:1:2:3","vci":-1}]}}})", "pvcs[0]"},
        {R"({"format":1,"adapter1":{"lec1":{"pvcs":[{"mac":"8:0:20:1:2:3","vci":300,"x":1}]}}})", "pvcs[0]"},
        {R"({"format":1,"adapter1":{"lec1":{"pvcs":[{"mac":"8:0:20:1:2:3","vci":300,"rate":-1}]}}})", "rate"},
        {R"({"format":1,"adapter1":{"les1":{"clients":[7]}}})", "clients[0]"},
        {R"({"format":1,"adapter1":{"lec1":{"pvcs":[[[[[[[[]]]]]]]]}}})", "deeply"},
    };
    for (const auto& c : cases) {
        const Said said = apply(c.json);
        EXPECT_EQ(said.status, 9) << c.json;
        EXPECT_THAT(said.err, HasSubstr(c.complaint)) << c.json;
    }
    EXPECT_EQ(tvctl("apply /no/such/document").status, 9);
    EXPECT_EQ(tvctl("apply - </dev/null").status, 9);
    EXPECT_EQ(tvctl("apply - --json < /bin/bash").status, 9);
    root.write("/nul", std::string(R"({"format":1})") + '\0' + "more");
    EXPECT_EQ(tvctl("apply - <" + root.at("/nul").string()).status, 9);
    EXPECT_EQ(tvctl("apply \"$(printf 'no\\nfile\\033[1m')\"").err,
              "tvctl: no\\x0afile\\x1b[1m: No such file or directory\n");
    EXPECT_EQ(files(), before);
    EXPECT_FALSE(hasHistory());
}

// Whatever stands in the files, what is shown of it is what they have.
TEST_F(Changing, WhatIsShownAndAppliedChangesNothing) {
    const Texts sample = files();
    for (int seed = 0; seed <= rounds(25); ++seed) {
        if (seed > 0)
            root.write(parameters, Scribe(static_cast<unsigned>(seed)).rewritten(sample.at(parameters)));
        const Texts before = files();
        const Said said = tvctl("show --json | " TVCTL_PROGRAM " apply -");
        ASSERT_EQ(said.status, 0) << seed << said.err;
        ASSERT_EQ(said.out, "no change\n") << seed;
        ASSERT_EQ(files(), before) << seed;
    }
    root.write(parameters, sample.at(parameters));
    root.edit(parameters, "Mfs                     = 1", "Mfs                     = 7");
    root.edit(parameters, "L3Mtu                   = 1500", "L3Mtu                   = -40000");
    root.edit(parameters, "UniRev                  = 31", "UniRev                  = 0");
    root.edit(parameters, "= engineering", "= gr\\x");
    root.edit("/etc/atm/pvcconf0.0", "Encap =1", "Encap =5");
    const std::string shown = tvctl("show adapter1").out;
    for (const char* line : {"lec1.mtu = code 7\n", "lec1.l3Mtu = -40000\n", "uniRevision = code 0\n",
                             "elanName = gr\\\\x\n", " vci 100 encapsulation code 5 broadcast"})
        EXPECT_THAT(shown, HasSubstr(line));
    EXPECT_EQ(tvctl("show --json | " TVCTL_PROGRAM " apply -").out, "no change\n");
}

TEST_F(Changing, ADocumentAppliedTwiceSendsAndWritesOnce) {
    const Simulator driver;
    const std::string json = R"({"format":1,
        "adapter1":{"lec1":{"elanName":"new","mac":"any"},
                    "lec2":{"pvcs":[{"mac":"8:0:20:1:2:3","vci":300}]},"ip":{"pvcs":[]}},
        "adapter3":{"les1":{"mtu":9234}}})";
    const Said first = apply(json);
    EXPECT_EQ(first.status, 0) << first.err;
    // Lists of services that run on come first; those that are restarted take theirs along.
    std::vector<std::string> requests;
    std::istringstream lines(first.out);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("request ")) requests.push_back(line.substr(8));
    EXPECT_THAT(requests, testing::ElementsAre("IPATM_PVCDEL adapter1/ip", "BRDG_PVCADD adapter1/lec2",
                                               "LEC_INIT adapter1/lec1", "BRDG_PVCADD adapter1/lec1",
                                               "BRDG_PVCADD adapter1/lec1", "LES_DISABLE adapter3/les1"));
    EXPECT_EQ(lastLine(first.out), "change 0001");
    const Texts after = files();
    EXPECT_EQ(apply(json).out, "no change\n");
    EXPECT_EQ(files(), after);
    EXPECT_FALSE(root.exists("/var/lib/tarvolin/history/0002")) << "all adapters were one change";

    // Another order of a list is written, and not sent.
    const Said other = apply(R"({"format":1,"adapter1":{"lec1":{"pvcs":[
        {"mac":"00:20:40:00:a1:02","vci":101,"encapsulation":"llc","broadcast":false,"rate":10},
        {"mac":"00:20:40:00:a1:01","vci":100,"encapsulation":"llc","broadcast":true,"rate":10}]}}})");
    EXPECT_EQ(other.out, "change 0002\n");
}

TEST_F(Changing, ADriverThatDoesNotTakeItIsSaid) {
    const Simulator driver;
    const Texts before = files();
    const struct {
        const char *fault, *words;
        int status;
        const char* last;
        bool writes;
    } cases[] = {
        {"lec.start every resp 5", "set adapter1/lec1.elanName=one", 4, "change 0001", true},
        {"lec.start every silent", "--timeout 0.3 set adapter1/lec1.elanName=two", 3, "change 0002", true},
        {"lec.pvc-add every resp 5", "pvc add adapter1/lec1 8:0:20:1:2:3 vci 300", 4, "no change", false},
        {"lec.pvc-add nth 2 silent", "--timeout 0.3 pvc add adapter1/lec1 8:0:20:1:2:3 vci 300", 0,
         "change 0003", true},
        {"lec.pvc-add every silent", "--timeout 0.3 pvc add adapter1/lec1 8:0:20:1:2:3 vci 301", 3,
         "no change", false},
        {"lec.pvc-add every resp 5", "pvc add adapter1/lec1 8:0:20:1:2:3 vci 302 --file-only", 0,
         "change 0004", true},
        {"lecs.map nth 2 resp 9", "client add adapter1/les1 00:00:00:00:00:01-00 00:00:00:00:00:02-00", 4,
         "no change", false},
    };
    for (const auto& c : cases) {
        driver.ctl("fault clear");
        driver.ctl(std::string("fault ") + c.fault);
        const Texts now = files();
        const Said said = tvctl(c.words);
        EXPECT_EQ(said.status, c.status) << c.words << said.err;
        EXPECT_EQ(lastLine(said.out), c.last) << c.words << said.out;
        EXPECT_EQ(files() != now, c.writes) << c.words;
    }
    driver.ctl("fault clear");
    EXPECT_THAT(tvctl("diff").out, testing::Not(HasSubstr("clients")))
        << "what was taken first was taken back";
}

TEST_F(Changing, AKeyThatItsSectionLacksIsNotSetAndNothingIsSent) {
    const Simulator driver;
    root.edit(parameters, "L3Mtu", "#L3Mtu");
    const Texts before = files();
    const Said said = tvctl("set adapter1/lec1.l3Mtu=1400 adapter1/lec2.elanName=other");
    EXPECT_EQ(said.status, 9);
    EXPECT_THAT(said.err, HasSubstr("/Adapter0/LEC0 has no L3Mtu"));
    EXPECT_EQ(files(), before);
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=other").status, 0) << "other keys of it can be set";
}

TEST_F(Changing, AChangeIsUndoneByteForByte) {
    std::mt19937 random(7);
    const char* const words[] = {"lec{}.elanName=n{}", "les{}.strictMtu=true", "lec{}.mtu=9234",
                                 "lec{}.enabled=false", "les{}.elanName=e{}"};
    fs::permissions(root.at("/etc/atm/pvcconf0.0"), fs::perms(0640));
    const Texts before = files();
    int changes = 0;
    for (int round = 0; round < (std::getenv("TV_THOROUGH") ? 100 : 12); ++round) {
        const std::string adapter = fmt::format("adapter{}/", random() % 4 + 1);
        const std::string number = std::to_string(random() % 4 + 1);
        const int kind = static_cast<int>(random() % 7);
        const std::string name = std::to_string(round);
        const Texts now = files();
        const Said said =
            kind < 5    ? tvctl("set " + adapter + fmt::format(fmt::runtime(words[kind]), number, name))
            : kind == 5 ? tvctl(fmt::format("pvc add {}lec{} 8:0:20:1:2:3 vci {} --file-only", adapter,
                                            number, 400 + round))
                        : tvctl("apply --file-only " +
                                document(fmt::format(R"({{"format":1,"adapter1":{{"lec{}":{{"pvcs":[]}}}}}})",
                                                     number)));
        ASSERT_EQ(said.status, 0) << said.err;
        if (said.out == "no change\n") continue;
        const std::string last = lastLine(said.out).substr(7);
        ASSERT_EQ(tvctl("revert " + last).status, 0);
        ASSERT_EQ(files(), now) << said.out;
        ASSERT_EQ(tvctl("revert " + std::to_string(std::stoi(last) + 1)).status, 0) << "the undoing undone";
        changes += 3;
    }
    EXPECT_GT(changes, 10);
    // The oldest that the history has, which goes with this.
    const Said oldest = tvctl("revert " + std::to_string(std::max(1, changes - 49)));
    EXPECT_EQ(oldest.status, 0) << oldest.err;
    if (changes < 50) {
        EXPECT_EQ(files(), before);
        EXPECT_EQ(fs::status(root.at("/etc/atm/pvcconf0.0")).permissions(), fs::perms(0640));
    }
    root.edit(parameters, "[Adapter0", "# by hand\n[Adapter0");
    EXPECT_EQ(tvctl("revert " + lastLine(oldest.out).substr(7)).status, 7);
    fs::permissions(root.at(parameters), fs::perms(0600));
    const Said mode = tvctl("revert " + lastLine(oldest.out).substr(7));
    EXPECT_EQ(mode.status, 7) << mode.err;
    fs::remove(root.at(fmt::format("/var/lib/tarvolin/history/{:04}/manifest.json", changes)));
    const Said gap = tvctl(fmt::format("revert {}", changes - 1));
    EXPECT_EQ(gap.status, 9);
    EXPECT_THAT(gap.err, HasSubstr(fmt::format("does not have change {:04}, or not all of it", changes)));
}

TEST_F(Changing, AChangeThatNobodyConfirmsIsTakenBack) {
    using namespace std::chrono_literals;
    const Simulator driver;
    const Texts before = files();
    const auto waitFor = [&](const Texts& texts) {
        for (int look = 0; look < 200 && root.exists("/var/lib/tarvolin/pending.json"); ++look)
            std::this_thread::sleep_for(50ms);
        return files() == texts;
    };
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=tried --confirm 1").status, 0);
    const Said locked = tvctl("set adapter1/lec1.elanName=other");
    EXPECT_EQ(locked.status, 6);
    EXPECT_THAT(locked.err, HasSubstr("change 0001 of root from"));
    EXPECT_THAT(tvctl("history").out, HasSubstr(" unconfirmed "));
    EXPECT_TRUE(waitFor(before));
    EXPECT_EQ(tvctl("diff").out, "") << "the driver has the old settings again";
    EXPECT_THAT(tvctl("history").out, HasSubstr("change 0001 was not confirmed"));

    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=kept --confirm 1").status, 0);
    const Texts kept = files();
    EXPECT_EQ(tvctl("confirm 2").status, 10);
    EXPECT_EQ(tvctl("confirm 3").status, 0);
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(files(), kept);

    // The guard is killed: whoever comes next takes the change back.
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=again --confirm 1").status, 0);
    const Json pending = Json::parse(root.read("/var/lib/tarvolin/pending.json"));
    ::kill(pending["guard"].get<pid_t>(), SIGKILL);
    std::this_thread::sleep_for(1200ms);
    EXPECT_NE(files(), kept);
    const Said next = tvctl("get adapter1/lec1.elanName");
    EXPECT_EQ(next.out, "kept\n");
    EXPECT_THAT(next.err, HasSubstr("has been taken back"));
}

// Whatever happens to the one who makes it, or to the files meanwhile.
TEST_F(Changing, AChangeIsTakenBackAlsoWhenItWasDisturbed) {
    using namespace std::chrono_literals;
    const Simulator driver;
    const auto waitUntilTakenBack = [&] {
        for (int look = 0; look < 200 && root.exists("/var/lib/tarvolin/pending.json"); ++look)
            std::this_thread::sleep_for(50ms);
        return !root.exists("/var/lib/tarvolin/pending.json");
    };
    const auto driverName = [] { return tvctl("show --state adapter1/lec1").out; };

    // Edited by hand while it waits: what the change did goes, the rest stays.
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=tried --confirm 1").status, 0);
    root.edit(parameters, "[Adapter0", "# by hand\n[Adapter0");
    root.edit(parameters, "= laboratory", "= byhand");
    EXPECT_TRUE(waitUntilTakenBack());
    EXPECT_EQ(tvctl("get adapter1/lec1.elanName").out, "engineering\n");
    EXPECT_THAT(root.read(parameters), AllOf(HasSubstr("# by hand"), HasSubstr("= byhand")));
    EXPECT_THAT(driverName(), HasSubstr("elanName = engineering"));
    EXPECT_THAT(tvctl("history").out, HasSubstr("change 0001 was not confirmed"));

    // The edit of what the change changed stays, and the driver gets it.
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=tried --confirm 1").status, 0);
    root.edit(parameters, "= tried", "= edited");
    EXPECT_TRUE(waitUntilTakenBack());
    EXPECT_THAT(driverName(), HasSubstr("elanName = edited"));
    EXPECT_THAT(tvctl("history").out, HasSubstr("\"not taken back\""));

    // The file was put back by hand: the driver gets it.
    const Texts now = files();
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=tried --confirm 1").status, 0);
    root.write(parameters, now.at(parameters));
    EXPECT_TRUE(waitUntilTakenBack());
    EXPECT_THAT(driverName(), HasSubstr("elanName = edited"));

    // A driver that was not told of it is not told of its end.
    const std::string logged = driver.ctl("log all");
    EXPECT_EQ(tvctl("set adapter1/lec1.l3Mtu=1400 --file-only --confirm 1").status, 0);
    EXPECT_TRUE(waitUntilTakenBack());
    EXPECT_EQ(driver.ctl("log all").find("lec.start", logged.size()), std::string::npos);

    // It cannot be taken back: the history says so.
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=stays --confirm 1").status, 0);
    root.write(parameters, "");
    EXPECT_TRUE(waitUntilTakenBack());
    EXPECT_THAT(tvctl("history").out, HasSubstr("\"not taken back\""));
}

TEST_F(Changing, ManyWhoTakeOverAGuardTakeTheChangeBackOnce) {
    using namespace std::chrono_literals;
    const Simulator driver;
    EXPECT_EQ(tvctl("set adapter1/lec1.l3Mtu=1400 --confirm 1").status, 0);
    ::kill(Json::parse(root.read("/var/lib/tarvolin/pending.json"))["guard"].get<pid_t>(), SIGKILL);
    std::this_thread::sleep_for(1200ms);
    driver.ctl("fault any every late 15");
    std::vector<std::future<Said>> all;
    for (int i = 0; i < 6; ++i)
        all.push_back(std::async(std::launch::async, [] { return tvctl("get adapter1/lec1.mtu"); }));
    for (auto& each : all) each.wait();
    driver.ctl("fault clear");
    EXPECT_TRUE(root.exists("/var/lib/tarvolin/history/0002"));
    EXPECT_FALSE(root.exists("/var/lib/tarvolin/history/0003"));
    EXPECT_EQ(tvctl("get adapter1/lec1.l3Mtu").out, "1500\n");
    EXPECT_THAT(tvctl("history").out, testing::Not(HasSubstr("not taken back")));
}

// Killed between the requests and the end of the save.
TEST_F(Changing, AChangeWhoseMakerIsKilledIsTakenBackAtOnce) {
    using namespace std::chrono_literals;
    const Simulator driver;
    const Texts before = files();
    for (const char* fault : {"lec.start nth 1 silent", "lec.start nth 2 silent"}) {
        driver.ctl("fault clear");
        driver.ctl(std::string("fault ") + fault);
        tvctl("set adapter1/lec1.elanName=one adapter1/lec2.elanName=two --confirm 60",
              "timeout -s KILL 0.5");
        driver.ctl("fault clear");
        for (int look = 0; look < 100 && root.exists("/var/lib/tarvolin/pending.json"); ++look)
            std::this_thread::sleep_for(50ms);
        EXPECT_FALSE(root.exists("/var/lib/tarvolin/pending.json")) << fault;
        EXPECT_EQ(files(), before) << fault;
        EXPECT_EQ(tvctl("diff").out, "") << fault;
    }
}

TEST_F(Changing, WhoIsAskedToEndSendsNothingMoreAndSaves) {
    const Simulator driver;
    driver.ctl("fault lec.start nth 1 silent");
    const Said said =
        tvctl("set adapter1/lec1.elanName=one adapter1/lec2.elanName=two", "timeout -s TERM 0.5");
    EXPECT_EQ(lastLine(said.out), "change 0001") << said.err;
    EXPECT_EQ(tvctl("get adapter1/lec2.elanName").out, "two\n");
    EXPECT_THAT(tvctl("history 1").out, AllOf(HasSubstr(" silent "), HasSubstr("no answer")));
}

TEST_F(Changing, WhoIsNotRootMayLook) {
    const std::string nobody = "setpriv --reuid 65534 --clear-groups " TVCTL_PROGRAM " ";
    const auto run = [&](const char* words) {
        return WEXITSTATUS(std::system((nobody + words + " >/dev/null 2>&1").c_str()));
    };
    fs::permissions(root.path(), fs::perms(0755));
    if (run("version") != 0) GTEST_SKIP() << "the program cannot be started as somebody else";
    for (const char* words : {"show", "get adapter1/lec1.mtu", "set adapter1/lec1.mtu=1516 --dry-run"})
        EXPECT_EQ(run(words), 0) << words;
    for (const char* words :
         {"set adapter1/lec1.mtu=4544", "apply -", "history", "revert 1", "confirm",
          "pvc delete adapter1/lec1 100", "client add adapter1/les1 00:00:00:00:00:01-00"})
        EXPECT_EQ(run(words), 77) << words;
}

// Closed, full, or gone; the change is not made twice for it.
TEST_F(Changing, OutputThatCannotBeWrittenIsSaid) {
    for (const char* output : {">&-", ">/dev/full"}) {
        const Said said = tvctl(std::string("show ") + output);
        EXPECT_EQ(said.status, 5) << output;
        EXPECT_EQ(said.err, "tvctl: the output cannot be written\n") << output;
    }
    const Said wrong = tvctl("--json nothing >/dev/full");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(std::ranges::count(wrong.err, '\n'), 1) << wrong.err;
    fs::remove(root.at(parameters));
    const Said missing = tvctl("show");
    EXPECT_EQ(missing.status, 9);
    EXPECT_EQ(missing.err, "tvctl: /etc/atm/tvconf: No such file or directory\n");
}

TEST_F(Changing, AListThatCannotBeReadIsNotAnEmptyOne) {
    fs::remove(root.at("/etc/atm/pvcconf0.0"));
    fs::create_directory(root.at("/etc/atm/pvcconf0.0"));
    const Said shown = tvctl("show --json adapter1/lec1");
    EXPECT_EQ(shown.status, 9);
    EXPECT_FALSE(Json::parse(shown.out)["adapter1"]["lec1"].contains("pvcs"));
    EXPECT_EQ(tvctl("get adapter1/lec1.pvcs").status, 9);
    const Said restarted = tvctl("set adapter1/lec1.l3Mtu=1400");
    EXPECT_EQ(restarted.status, 9);
    EXPECT_THAT(restarted.err, HasSubstr("its list in /etc/atm/pvcconf0.0 cannot be read"));
    EXPECT_EQ(tvctl("set adapter1/lec2.l3Mtu=4000").status, 0);
    EXPECT_EQ(tvctl("pvc modify adapter1/lec1 100 null --file-only").status, 9);
    EXPECT_EQ(tvctl("pvc add adapter1/lec1 8:0:20:1:2:3 vci 300 --dry-run").status, 9);
}

TEST_F(Changing, APreviewHasTheRequestsAndSendsNone) {
    const Simulator driver;
    const struct {
        const char *words, *requests;
    } cases[] = {
        {"pvc delete adapter1/lec1 100 '[1]'", "request BRDG_PVCDEL adapter1/lec1\n"
                                               "request BRDG_PVCDEL adapter1/lec1\n"},
        {"client move adapter1/les2 00:a0:3e:00:00:01-00", "request LECS_DEL_ADDR adapter1/lecs\n"
                                                           "request LECS_SET_ADDR adapter1/lecs\n"},
        {"set adapter1/lec2.elanName=other", "request LEC_INIT adapter1/lec2\n"},
        {"set adapter1/lec2.elanName=other --file-only", ""},
    };
    for (const auto& c : cases) {
        const Said said = tvctl(std::string(c.words) + " --dry-run");
        EXPECT_EQ(said.status, 1) << said.err;
        EXPECT_THAT(said.out, testing::EndsWith(std::string(c.requests) + "dry run\n")) << c.words;
    }
    EXPECT_EQ(tvctl("diff").out, "");
    EXPECT_FALSE(hasHistory());
}

TEST_F(Changing, WithoutAHistoryNothingIsTriedAndItIsSaid) {
    root.write("/var/lib/tarvolin/history", "in the way");
    fs::permissions(root.at("/var/lib/tarvolin"), fs::perms(0700));
    const Texts before = files();
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=tried --confirm 1").status, 5);
    EXPECT_EQ(files(), before);
    const Said said = tvctl("set adapter1/lec1.elanName=done");
    EXPECT_EQ(lastLine(said.out), "change none");
    EXPECT_THAT(said.err, HasSubstr("the history does not have this change"));
    EXPECT_NE(files(), before);
}

TEST_F(Changing, ADriverThatNeverAnswersIsNoMissingOne) {
    const Simulator driver;
    driver.ctl("fault any every silent");
    for (const char* words : {"diff", "trace api on", "pvc add adapter1/lec1 8:0:20:1:2:3 vci 300",
                              "set adapter1/lec1.elanName=other"})
        EXPECT_EQ(tvctl(std::string("--timeout 0.2 ") + words).status, 3) << words;
}
