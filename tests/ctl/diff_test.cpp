// diff: what it says of files, driver and past, and of what nobody knows.
#include "tests/support/simulator.h"
#include "tvctl.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::ordered_json;

namespace {

constexpr const char* parameters = "/etc/atm/tvconf";

struct Diff : testing::Test {
    SampleRoot root;

    // As somebody's editor does, some time after the driver was loaded.
    void editByHand(const std::string& from, const std::string& to, int secondsLater) const {
        root.edit(parameters, from, to);
        fs::last_write_time(root.at(parameters),
                            fs::file_time_type::clock::now() + std::chrono::seconds(secondsLater));
    }
};

}  // namespace

TEST_F(Diff, TellsWhatWasNotSentOrNotTaken) {
    for (const char* words : {"diff", "diff sent file"}) EXPECT_EQ(tvctl(words).status, 8) << words;
    std::optional<Simulator> driver(std::in_place);
    EXPECT_EQ(tvctl("diff").out, "");
    const struct {
        const char *words, *line;
        int status;
    } cases[] = {
        {"set --file-only adapter1/les1.elanName=static", "- adapter1/les1.elanName = static\n", 1},
        {"set adapter1/les1.elanName=engineering", "", 0},
        {"set --file-only adapter1/lec1.l3Mtu=1400", "+? adapter1/lec1.l3Mtu = unknown\n", 0},
        {"set adapter1/lec1.l3Mtu=1300", "", 0},
        {"set --file-only adapter1/lec1.l3Mtu=1200", "+s adapter1/lec1.l3Mtu = 1300\n", 1},
        {"set adapter1/lec1.l3Mtu=1300 --file-only", "", 0},
        {"pvc add --file-only adapter1/lec1 8:0:20:1:2:3 vci 300", "vci 300 llc noBroadcast rate 0\n", 1},
        {"pvc delete --file-only adapter1/lec1 300", "", 0},
        // A client that is starting, and whose table is empty, and one of whose addresses the case alone
        // differs.
        {"pvc add --file-only adapter1/lec2 00:20:40:00:b1:01 vci 300", "- adapter1/lec2.pvcs[0]", 1},
        {"pvc delete --file-only adapter1/lec2 300", "", 0},
        {"set adapter1/lec3.useLecs=true adapter1/lec3.networkPrefix=47007900000000000000000000", "", 0},
        {"set adapter1/les5.enabled=true --file-only", ". adapter1/les5\n", 1},
        {"set adapter1/les5.enabled=false --file-only", "", 0},
    };
    for (const auto& c : cases) {
        tvctl(c.words);
        const Said said = tvctl("diff");
        EXPECT_EQ(said.status, c.status) << c.words << said.out;
        EXPECT_THAT(said.out, *c.line ? testing::Matcher<std::string>(HasSubstr(c.line)) : testing::Eq(""))
            << c.words;
    }
    tvctl("pvc delete --file-only adapter1/lec1 100");
    const Json only = Json::parse(tvctl("diff --json").out)["differences"][0];
    EXPECT_EQ(only["to"].dump(), R"({"mac":"00:20:40:00:a1:01","vci":100})");
    EXPECT_FALSE(only.contains("from"));
    tvctl("pvc add --file-only adapter1/lec1 00:20:40:00:a1:01 vci 100 llc broadcast rate 10");
    driver->ctl("fault lec.start every resp 5");
    EXPECT_EQ(tvctl("set adapter1/lec1.elanName=refused adapter1/lec1.useLecs=false").status, 4);
    EXPECT_EQ(tvctl("diff").status, 1);
    driver.reset();
    driver.emplace();
    EXPECT_EQ(tvctl("diff").status, 0) << tvctl("diff").out;
}

TEST_F(Diff, AnEditByHandIsNotForgottenWithTheNextChange) {
    const Simulator driver;
    editByHand("L3Mtu                   = 1500", "L3Mtu                   = 1200", 10);
    editByHand("= engineering", "= byhand", 10);
    const char* const edited = "+? adapter1/lec1.l3Mtu = unknown\n";
    const char* const counts = "- adapter1/lec1.elanName = byhand\n";
    const struct {
        const char* words;
        bool other;  // something is unknown of another client, too
    } cases[] = {
        {"set adapter2/lec1.l3Mtu=1499", false},
        {"pvc add --file-only adapter1/lec2 00:20:40:00:b1:01 vci 300", false},
        {"set --file-only adapter2/lec2.l3Mtu=1499", true},
    };
    EXPECT_THAT(tvctl("diff").out, testing::AllOf(HasSubstr(edited), HasSubstr(counts)));
    for (const auto& c : cases) {
        ASSERT_EQ(tvctl(c.words).status, 0) << c.words;
        const Said said = tvctl("diff");
        EXPECT_EQ(said.status, 1) << c.words;
        EXPECT_THAT(said.out, testing::AllOf(HasSubstr(edited), HasSubstr(counts))) << c.words;
        EXPECT_THAT(said.out, Not(HasSubstr("adapter2/lec1"))) << "its settings were sent since";
    }
    // The client is restarted with what the file has.
    ASSERT_EQ(tvctl("set adapter1/lec1.l3Mtu=1300").status, 0);
    EXPECT_THAT(tvctl("diff").out, Not(HasSubstr("adapter1/lec1")));
}

TEST_F(Diff, WhatTheDriverDoesNotTellIsSaidBesideWhatItTells) {
    const Simulator driver;
    ASSERT_EQ(tvctl("set --file-only adapter1/les1.elanName=static").status, 0);
    ASSERT_EQ(tvctl("pvc add --file-only adapter1/lec1 00:20:40:00:b1:01 vci 300").status, 0);
    const std::string name = "- adapter1/les1.elanName = static\n", pvc = "- adapter1/lec1.pvcs[";
    const struct {
        const char* fault;
        const char* complaint;
        bool name, pvc;
    } cases[] = {
        {"any every resp 5", "the driver refuses to say which adapters there are", false, false},
        {"driver.boards every resp 5", "the driver refuses to say which adapters there are", false, false},
        {"driver.revision every resp 5", "adapter1 and others: the driver refuses to say", true, true},
        {"adapter.mac nth 2 resp 5", "adapter2: the driver refuses to say", true, true},
        {"lec.state every resp 5", "adapter1/lec1 and others: the driver refuses to say (5)", true, false},
        {"les.state every resp 5", "adapter1/les1 and others: the driver refuses to say (5)", false, true},
        {"les.stats nth 1 resp 5", "adapter1/les1: the driver refuses to say (5)", false, true},
        {"lec.rows every resp 5", "adapter1/lec1 and others: the driver refuses to say (5)", true, false},
        {"lec.table nth 1 short 80", "adapter1/lec1: the driver's answer is incomplete", true, false},
        {"ip.state nth 1 dead", "adapter1/ip: the driver's answer is incomplete", true, true},
    };
    for (const auto& c : cases) {
        driver.ctl("fault clear");
        driver.ctl(std::string("fault ") + c.fault);
        const Said said = tvctl("diff");
        EXPECT_EQ(said.status, 4) << c.fault;
        EXPECT_EQ(said.err, std::string("tvctl: ") + c.complaint + '\n') << c.fault;
        EXPECT_EQ(said.out.find(name) != said.out.npos, c.name) << c.fault << said.out;
        EXPECT_EQ(said.out.find(pvc) != said.out.npos, c.pvc) << c.fault << said.out;
    }
}

TEST_F(Diff, NothingRunsOnAnAdapterThatTheDriverLacks) {
    const Simulator driver({"--frozen", "--adapters", "1,3"});
    const Said said = tvctl("diff");
    EXPECT_EQ(said.status, 1);
    EXPECT_EQ(said.out, ". adapter2/lec1\n. adapter2/lec2\n. adapter2/les3\n. adapter2/ip\n");
}

TEST_F(Diff, TheClientsOfAConfigurationServerAreKnownOnceItRuns) {
    const Simulator driver;
    ASSERT_EQ(tvctl("set adapter1/lecs.ethernetMtu=4544").status, 0);
    ASSERT_EQ(tvctl("client add --file-only adapter1/les1 00:a0:3e:00:00:77-01").status, 0);
    EXPECT_THAT(tvctl("diff").out, Not(HasSubstr("clients")));
    driver.ctl("clock step 60");
    EXPECT_THAT(tvctl("diff").out,
                testing::AllOf(testing::StartsWith("- adapter1/les1.clients["), HasSubstr("77-01\n")));
}

TEST_F(Diff, AListThatCannotBeReadIsLeftOut) {
    std::optional<Simulator> driver(std::in_place);
    ASSERT_EQ(tvctl("set adapter1/lec2.l3Mtu=4000").status, 0);
    root.write("/document", R"({"format":1,"adapter1":{"lec1":{"pvcs":[]}}})");
    const std::string list = "/etc/atm/pvcconf0.0";
    const struct {
        const char* words;
        int status;
        const char* out;
    } cases[] = {
        {"diff", 9, ""},
        {"diff file @1", 9, "- adapter1/lec2.l3Mtu = 4000\n+ adapter1/lec2.l3Mtu = 4470\n"},
        {"diff @1 driver", 9, "-s adapter1/lec2.l3Mtu = 4470\n+s adapter1/lec2.l3Mtu = 4000\n"},
    };
    for (const bool directory : {true, false}) {
        fs::remove(root.at(list));
        directory ? void(fs::create_directory(root.at(list))) : root.write(list, "garbage");
        for (const auto& c : cases) {
            const Said said = tvctl(c.words);
            EXPECT_EQ(said.status, c.status) << c.words;
            EXPECT_EQ(said.out, c.out) << c.words;
            EXPECT_EQ(said.err, "tvctl: " + list + " cannot be read: the list is left out\n") << c.words;
        }
        const Said document = tvctl("diff " + root.at("/document").string());
        EXPECT_EQ(document.status, 1) << "its list is known";
        EXPECT_THAT(document.out, testing::StartsWith("+ adapter1/lec1.pvcs[0]"));
    }
    EXPECT_EQ(tvctl("diff driver /no/such/document").status, 9);
    driver->ctl("fault lec.state every resp 5");
    EXPECT_EQ(tvctl("diff").status, 9) << "before the driver's refusal";
    driver.reset();
    EXPECT_EQ(tvctl("diff").status, 9) << "and before its absence";
}
