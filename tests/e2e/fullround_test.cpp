#include "tests/e2e/configurationtest.h"

#include <fstream>

class FullRound : public ConfigurationTest {
  protected:
    void SetUp() override {
        ConfigurationTest::SetUp();
        advSettings = 1;
    }

    void changeSignalling() {
        turnTo("signalPage");
        fill({{uniRevisionCBO, "Up"},
              {portChangeCB},
              {otherPrefixesCB},
              {addrRegCB},
              {registeredPrefixED, "390123456789abcdef0123456789"}});
    }
    void changeClients() {
        turnTo("lecPage");
        const char* type[] = {"Down", "Up", "Down", "Down"};
        for (int i = 0; i < lecCount; ++i) {
            tab(i + 1);
            if (i == 3) press(enableCB);
            fill({{elanNameED, fmt::format("lan-{}", i)},
                  {elanTypeCBO, type[i]},
                  {elanMtuCBO, "Down"},
                  {l3MtuED, "9999"}});
            press(i == 2 ? lecsRB : lesRB);
            fill({{networkPrefixED, fmt::format("4{}", i)}, {esiSelectorED, fmt::format("0{}ff", i)}});
            inSubDialog(addBTN, "lecPvc",
                        {{pvcMacED, fmt::format("aabbcc0000{:02x}", i)},
                         {pvcVciED, std::to_string(2000 + i)},
                         {i % 2 ? llcSnapRB : nullRB}});
            press(pvcOnlyCB);  // greys the rest, which is stored all the same
        }
    }
    void changeServers() {
        turnTo("lesPage");
        for (int i = 0; i < lesCount; ++i) {
            tab(i + 1, lesTB);
            if (!on(enableCB)) press(enableCB);
            press(i == 1 ? ethernetRB : tokenRingRB);
            fill({{elanNameED, fmt::format("elan-{}", i)},
                  {elanMtuCBO, "Down"},
                  {strictNameCB},
                  {strictMtuCB}});
            inSubDialog(addBTN, "elanClient", {{esiSelectorED, fmt::format("00aa{:02x}", i)}});
        }
    }
    void changeLecs() {
        turnTo("lecsPage");
        fill({{enableCB},
              {networkPrefixED, "4712"},
              {esiSelectorED, "0034"},
              {etherMtuCBO, "Down"},
              {tokenRingMtuCBO, "Down"},
              {tokenRingRB}});
    }
    void changeIp() {
        turnTo("ip1577Page");
        fill({{enableCB},
              {ipED, "10.20.30.40"},
              {subnetMaskED, "255.255.0.0"},
              {serverCB},
              {serverIpED, "10.20.30.1"},
              {networkPrefixED, "4856"},
              {esiSelectorED, "0078"}});
        inSubDialog(addBTN, "ipPvc", {{pvcIpED, "10.20.30.50"}, {pvcVciED, "3000"}});
        selectRow(1);
        press(deleteBTN);
        press(pvcOnlyCB);
    }

    // What differs between two states of the files, line by line.
    static std::string changes(std::map<std::string, std::string> before,
                               const std::map<std::string, std::string>& after) {
        std::string all;
        for (const auto& [name, text] : after) {
            if (text == before[name]) continue;
            all += name.substr(name.rfind('/') + 1) + '\n';
            for (const std::string& line : differences(before[name], text)) all += line + '\n';
        }
        return all;
    }
};

// Every field of every page of one adapter, changed through the windows, is in the files byte by byte, in the
// driver, and after a restart of both back on the pages.
TEST_F(FullRound, WhatIsChangedIsInTheFilesTheDriverAndBackAgain) {
    std::string file = root.read(parameterFile);
    for (const char* section : {"[LECS0", "[IP15770"}) {  // to be switched on
        const std::size_t at = file.find(section, file.find("\n[Adapter0"));
        file[file.find_first_of("01", file.find("Enabled", at))] = '0';
    }
    root.write(parameterFile, file);
    const auto before = files();
    start();
    // The driver has no configuration server and no IP client yet: their lists change on consent.
    const Names boxes = boxesOf([&] {
        configure([&] {
            changeSignalling();
            changeClients();
            changeServers();
            changeLecs();
            changeIp();
            turnTo("signalPage");
            press(okBTN);
        });
    });
    EXPECT_EQ(boxes.back(), "Configuration Change");

    std::ifstream golden(TV_GOLDEN_DIRECTORY "/fullround.txt");
    EXPECT_EQ(differences({std::istreambuf_iterator<char>(golden), {}}, changes(before, files())), Names{});

    // Driver and program anew, on these files.
    const auto written = files();
    const std::string held = dump();
    const AtmDevices records = atmDevices;
    window.reset();
    atmDevices = AtmDevices();
    start();
    for (const std::string& line : differences(held, dump()))
        EXPECT_EQ(line.substr(1, 13), "config sig 1 ") << line << ": signalling is restarted by hand";
    told();
    configure([&] {
        for (const char* page : {"signalPage", "lecPage", "lesPage", "lecsPage", "ip1577Page"}) turnTo(page);
        EXPECT_EQ(text(ipED) + ' ' + text(subnetMaskED) + ' ' + text(serverIpED),
                  "10.20.30.40 255.255.0.0 10.20.30.1");
        EXPECT_EQ(pvcRows(), Names{"10.20.30.50 | 0 / 3000 | NULL"});
        press(okBTN);
    });
    EXPECT_EQ(told(), Names{});
    EXPECT_EQ(files(), written);
    EXPECT_TRUE(atmDevices.lec[0] == records.lec[0]);
    EXPECT_TRUE(atmDevices.les[0] == records.les[0]);
    EXPECT_TRUE(atmDevices.lecs[0] == records.lecs[0]);
    EXPECT_TRUE(atmDevices.ip1577[0] == records.ip1577[0]);
    EXPECT_TRUE(atmDevices.sig[0] == records.sig[0]);
}
