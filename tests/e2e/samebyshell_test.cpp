// The same changes by mouse and by tvctl: the same files, requests, history, and driver.
#include "tests/e2e/configurationtest.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

class SameByShell : public ConfigurationTest {
  protected:
    struct Change {
        std::string page;
        int tab = 0, strip = lecTB;
        std::vector<Edit> edits;
        std::string words;  // of tvctl
    };
    struct After {
        std::map<std::string, std::string> files;
        Names requests;
        std::string history;
    };

    void SetUp() override {
        ConfigurationTest::SetUp();
        advSettings = 1;
    }

    static std::vector<Change> changes() {
        std::vector<Change> all;
        for (int i = 1; i <= lecCount; ++i) {
            const std::string path = fmt::format("set adapter1/lec{}.", i);
            const auto lec = [&](std::vector<Edit> edits, const std::string& words) {
                all.push_back({"lecPage", i, lecTB, std::move(edits), path + words});
            };
            if (i == 4) lec({{enableCB}}, "enabled=true");
            lec({{elanNameED, fmt::format("lan-{}", i)}}, fmt::format("elanName=lan-{}", i));
            lec({{l3MtuED, fmt::format("100{}", i)}}, fmt::format("l3Mtu=100{}", i));
            lec({{elanMtuCBO, "Down"}}, i == 2 ? "mtu=9234" : "mtu=4544");
            lec({{elanMtuCBO, "Up"}}, i == 2 ? "mtu=4544" : "mtu=1516");
            lec({{esiSelectorED, fmt::format("00a03e0000{:02x}07", i)}},
                fmt::format("esiSelector=00:a0:3e:00:00:{:02x}-07", i));
            lec({{pvcOnlyCB}}, "pvcOnly=true");
            if (i < 4) lec({{enableCB}}, "enabled=false");
        }
        for (int i = 1; i <= lesCount; ++i) {
            const std::string path = fmt::format("set adapter1/les{}.", i);
            if (i > 3) all.push_back({"lesPage", i, lesTB, {{enableCB}}, path + "enabled=true"});
            all.push_back({"lesPage",
                           i,
                           lesTB,
                           {{elanNameED, fmt::format("elan-{}", i)}},
                           path + fmt::format("elanName=elan-{}", i)});
            all.push_back(
                {"lesPage", i, lesTB, {{elanMtuCBO, "Down"}}, path + (i == 2 ? "mtu=9234" : "mtu=4544")});
        }
        all.push_back({"lecsPage", 0, 0, {{etherMtuCBO, "Down"}}, "set adapter1/lecs.ethernetMtu=4544"});
        all.push_back({"lecsPage", 0, 0, {{enableCB}}, "set adapter1/lecs.enabled=false"});
        all.push_back({"ip1577Page", 0, 0, {{ipED, "10.20.30.40"}}, "set adapter1/ip.address=10.20.30.40"});
        all.push_back(
            {"ip1577Page", 0, 0, {{subnetMaskED, "255.255.0.0"}}, "set adapter1/ip.subnetMask=255.255.0.0"});
        all.push_back(
            {"signalPage", 0, 0, {{portChangeCB}}, "set adapter1/signalling.portChangeDetect=false"});
        return all;
    }

    // What the last change has left.
    After after() {
        After now{files(), told(), {}};
        std::string newest;
        const fs::path history = root.at("/var/lib/tarvolin/history");
        if (fs::exists(history))
            for (const auto& entry : fs::directory_iterator(history))
                newest = std::max(newest, entry.path().filename().string());
        if (newest.empty()) return now;
        Json manifest = Json::parse(root.read("/var/lib/tarvolin/history/" + newest + "/manifest.json"));
        for (const char* who : {"time", "program", "display", "from"}) manifest.erase(who);
        now.history = manifest.dump(1);
        return now;
    }

    void byMouse(const Change& change) {
        boxesOf([&] {
            configure(change.page, [&] {
                if (change.tab > 0) tab(change.tab, change.strip);
                fill(change.edits);
                press(okBTN);
            });
        });
    }
};

TEST_F(SameByShell, LeavesTheSame) {
    const std::vector<Change> all = changes();
    EXPECT_GE(all.size(), 50U);
    start("1");
    told();
    std::vector<After> mouse;
    for (const Change& change : all) {
        byMouse(change);
        mouse.push_back(after());
    }
    const std::string driver = dump();
    window.reset();

    fs::remove_all(root.at("/etc/atm"));
    fs::remove_all(root.at("/var/lib"));
    writeSampleConfiguration(root);
    startDriver("1");
    for (std::size_t i = 0; i < all.size(); ++i) {
        ASSERT_EQ(std::system((TVCTL_PROGRAM " " + all[i].words + " >/dev/null").c_str()), 0) << all[i].words;
        const After shell = after();
        ASSERT_EQ(shell.files, mouse[i].files) << all[i].words;
        ASSERT_EQ(shell.requests, mouse[i].requests) << all[i].words;
        ASSERT_EQ(shell.history, mouse[i].history) << all[i].words;
    }
    EXPECT_EQ(differences(driver, dump()), Names{});
}
