#include "tests/e2e/configurationtest.h"

#include "tests/support/scripteddriver.h"
#include "ui/config/listedit.h"

namespace {

// Counts comparisons and assignments.
struct Counted {
    static inline long work = 0;
    int value = 0;

    Counted(int number) : value(number) {}
    Counted(const Counted&) = default;
    Counted& operator=(const Counted& other) {
        ++work;
        value = other.value;
        return *this;
    }
    bool operator<(const Counted& other) const { return ++work, value < other.value; }
};

}  // namespace

TEST(ListEdits, TakingManyOutIsOnePassAndKeepsTheOrder) {
    std::vector<esiSelector> list(5);
    const char* const texts[] = {"20", "10", "20", "30", "20"};
    for (std::size_t i = 0; i < list.size(); ++i) list[i] = texts[i];
    std::multiset<esiSelector> leaving{list[0], list[0], list[3], esiSelector()};
    const std::vector<esiSelector> kept{list[1], list[4]};
    takeOut(list, leaving);
    EXPECT_EQ(list, kept);
    EXPECT_TRUE(leaving.empty());

    const auto workOf = [](int count) {
        std::vector<Counted> all;
        std::multiset<Counted> half;
        for (int i = 0; i < 2 * count; ++i) all.emplace_back(i);
        for (int i = 0; i < count; ++i) half.emplace(2 * i);
        Counted::work = 0;
        takeOut(all, half);
        EXPECT_EQ(all.size(), static_cast<std::size_t>(count));
        return Counted::work;
    };
    EXPECT_LT(workOf(10000), 15 * workOf(1000));
}

// The pages of the notebook other than the LEC page.
class PagesTest : public ConfigurationTest {
  protected:
    void startAdvanced() {
        advSettings = 1;
        start();
        simulator->ctl("clock step 60");  // servers up, clients joined
        told();
    }
    // Moves two clients, by their lines, to the server that is shown.
    void insertClients(int line, int other) {
        inSubDialog(insertBTN, "moveClients", [=, this] {
            pickLine(availableLB, line);
            pickLine(availableLB, other);
            press(subOkBTN);
        });
    }
};

TEST_F(PagesTest, RegistrationGreysThePrefixWhichSurvives) {
    startAdvanced();
    const std::string before = root.read(parameterFile);
    const auto expectRegistered = [&](bool registered) {
        for (const int id : {portChangeCB, otherPrefixesCB}) EXPECT_EQ(usable(id), registered) << id;
        for (const int id : {networkPrefixLBL, registeredPrefixED}) EXPECT_EQ(usable(id), !registered) << id;
        for (const int id : {uniRevisionCBO, addrRegCB}) EXPECT_TRUE(usable(id)) << id;
    };
    expectBoxes({"Configuration Change"}, [&] {
        turnTo("signalPage");
        EXPECT_EQ(text(vpiED) + ' ' + text(firstVciED) + ' ' + text(lastVciED), "0 32 1023");
        expectRegistered(true);
        press(otherPrefixesCB);
        press(addrRegCB);
        expectRegistered(false);
        enter(registeredPrefixED, "39");
        press(addrRegCB);
        expectRegistered(true);
        choose(uniRevisionCBO, "Up");
        press(okBTN);
    });
    EXPECT_EQ(boxText, "Signalling parameters changed!You will need to manually restart signalling.");
    EXPECT_EQ(told(), nothing);
    EXPECT_EQ(atmDevices.sig[0].uniRevision, 30);
    EXPECT_EQ(atmDevices.sig[0].registerOtherPrefixes, 1);
    EXPECT_EQ(atmDevices.sig[0].address.digits().substr(0, 26), "39" + std::string(24, '0'));
    EXPECT_EQ(differences(before, root.read(parameterFile)).size(), 6U);
}

TEST_F(PagesTest, TheWellKnownAddressOfTheLecsComesAndGoes) {
    startAdvanced();
    const std::string own = "47:00:79:00:00:00:00:00:00:00:00:00:00";
    configure("lecsPage", [&] {
        EXPECT_FALSE(on(wellKnownAddressCB)) << "also when the address is the well-known one";
        EXPECT_EQ(text(networkPrefixED), own);
        enter(networkPrefixED, "39");
        press(wellKnownAddressCB);
        EXPECT_EQ(text(networkPrefixED), own);
        EXPECT_EQ(text(esiSelectorED), "00:A0:3E:00:00:01-00");
        press(wellKnownAddressCB);
        EXPECT_EQ(text(networkPrefixED), "39:00:00:00:00:00:00:00:00:00:00:00:00");
        EXPECT_EQ(text(esiSelectorED), "00:a0:3e:00:00:01-00");
        press(wellKnownAddressCB);
        press(tokenRingRB);
        press(enableCB);
        for (const int id :
             {wellKnownAddressCB, networkPrefixED, networkPrefixLBL, esiSelectorED, esiSelectorLBL,
              etherMtuCBO, etherMtuLBL, tokenRingMtuCBO, tokenRingMtuLBL, ethernetRB, tokenRingRB})
            EXPECT_FALSE(usable(id)) << id;
        press(okBTN);
    });
    EXPECT_EQ(told(), (Names{"lecs.stop 0"}));
    EXPECT_EQ(atmDevices.lecs[0].address.digits(), "4700790000000000000000000000A03E00000100");
    EXPECT_EQ(atmDevices.lecs[0].elanType, 2) << "greyed values are stored";
    EXPECT_EQ(atmDevices.lecs[0].enabled, 0);
    expectTheFilesHold(dump());
}

// A LAN Emulation Server's clients, in the words of the list.
TEST_F(PagesTest, ElanClientsFollowTheDriverOrTheUsersConsent) {
    const char* list = "/etc/atm/elan0.0";
    const std::string initial = "00a03e000011/00\n00204000c101/00\n";
    for (const char* key : {"", "Return", "Escape"}) {  // the answer where the driver refuses
        SCOPED_TRACE(key);
        const bool refuses = *key, changed = *key != 'E';
        root.write(list, initial);
        atmDevices = AtmDevices();
        esiSelectorXferBuffer = esiSelector();
        startAdvanced();
        if (refuses) simulator->ctl("fault lecs.control every resp 9");
        const auto pressAndAgree = [&](int button, const std::string& question) {
            const auto action = [&] { press(button); };
            if (!refuses) return action();
            EXPECT_EQ(boxesOf(action, key), Names{"ELAN Client Error"});
            EXPECT_TRUE(boxText.starts_with("Unable to Dynamically " + question)) << boxText;
        };
        configure("lesPage", [&] {
            Names shown{"00:a0:3e:00:00:11-00  PERM", "00:20:40:00:c1:01-00  PERM",
                        "00:a0:3e:00:00:01-00  TEMP"};
            EXPECT_EQ(lines(clientLB), shown);
            press(deleteBTN);  // nothing is selected: nothing happens

            pickLine(clientLB, 1);
            inDialog("Add ELAN Client", [&] {
                EXPECT_EQ(text(esiSelectorED), "00:a0:3e:00:00:11-00") << "the selected client";
                enter(esiSelectorED, "0020400000ff");
                press(subOkBTN);
            });
            pressAndAgree(addBTN,
                          "Add 00:20:40:00:00:ff-00Do you still want to modify Static Configuration?");
            if (changed) shown.insert(shown.begin() + 2, "00:20:40:00:00:ff-00  PERM");
            EXPECT_EQ(lines(clientLB), shown);

            pickLine(clientLB, 2);
            pressAndAgree(deleteBTN, "Delete 00:20:40:00:c1:01-00");
            if (changed) shown.erase(shown.begin() + 1);
            EXPECT_EQ(lines(clientLB), shown);

            pickLine(clientLB, 3);
            pressAndAgree(deleteBTN, "Delete 00:a0:3e:00:00:01-00");
            EXPECT_EQ(lines(clientLB), shown) << "not read again";
            tab(2, lesTB);
            tab(1, lesTB);
            if (!refuses) shown.pop_back();
            EXPECT_EQ(lines(clientLB), shown);
            press(cancelBTN);
        });
        EXPECT_EQ(told(), (Names{"lecs.map 0", "lecs.unmap 0", "lecs.unmap 0"}));
        EXPECT_EQ(root.read(list), changed ? "00a03e000011/00\n0020400000ff/00\n" : initial);
        window.reset();
    }
}

TEST_F(PagesTest, ClientsOfOtherServersAreMovedHere) {
    startAdvanced();
    LogCapture log;
    configure("lesPage", [&] {
        tab(2, lesTB);
        const Names here{"00:a0:3e:00:00:02-00  PERM", "00:20:40:00:c2:01-00  PERM",
                         "00:a0:3e:00:00:02-00  TEMP"};
        EXPECT_EQ(lines(clientLB), here);
        const Names others{"00:a0:3e:00:00:01-00 - LES 1", "00:a0:3e:00:00:11-00 - LES 1",
                           "00:20:40:00:c1:01-00 - LES 1", "00:20:40:00:c1:02-00 - LES 1",
                           "00:20:40:00:c1:03-00 - LES 1", "00:a0:3e:00:00:01-00 - LES 1"};
        for (const char* close : {"OK", "Escape"}) {  // OK with nothing selected, and Cancel
            inSubDialog(insertBTN, "moveClients", [&] {
                EXPECT_EQ(lines(availableLB), others);
                if (*close == 'O') return press(subOkBTN);
                pickLine(availableLB, 1);
                user->key(close);
            });
            EXPECT_EQ(lines(clientLB), here) << close;
        }
        insertClients(2, 4);
        EXPECT_EQ(lines(clientLB).size(), 5U);
        EXPECT_EQ(lines(clientLB)[2], "00:a0:3e:00:00:11-00  PERM");
        tab(1, lesTB);
        EXPECT_EQ(lines(clientLB), (Names{"00:a0:3e:00:00:01-00  PERM", "00:20:40:00:c1:01-00  PERM",
                                          "00:20:40:00:c1:03-00  PERM", "00:a0:3e:00:00:01-00  TEMP"}));
        press(enableCB);
        tab(2, lesTB);
        tab(1, lesTB);
        EXPECT_EQ(lines(clientLB).size(), 3U) << "a server that is off has no temporary clients";
        for (const int id : {elanNameLBL, elanNameED, elanMtuLBL, elanMtuCBO, ethernetRB, tokenRingRB,
                             strictNameCB, strictMtuCB, clientLB, addBTN, insertBTN, deleteBTN})
            EXPECT_FALSE(usable(id)) << id;
        press(cancelBTN);
    });
    EXPECT_EQ(told(), (Names{"lecs.unmap 0", "lecs.map 1", "lecs.unmap 1", "lecs.map 1"}));
    EXPECT_NE(log.take().find("getting perm entries: LES0\ngetting perm entries: LES2"), std::string::npos);
    EXPECT_EQ(root.read("/etc/atm/elan0.1"),
              "00a03e000002/00\n00204000c201/00\n00a03e000011/00\n00204000c102/00\n");
    expectTheFilesHold(dump());
}

// Counted in requests to the X server, which are sent when the list draws.
TEST_F(PagesTest, MovingManyClientsDrawsTheListOnce) {
    const std::string here = root.read("/etc/atm/elan0.1");
    const auto requestsFor = [&](int count) {
        root.write("/etc/atm/elan0.1", here);
        std::string list;
        for (int i = 0; i < count; ++i) list += fmt::format("002040{:06x}/00\n", i);
        root.write("/etc/atm/elan0.0", list);
        atmDevices = AtmDevices();
        startAdvanced();
        unsigned long requests = 0;
        configure("lesPage", [&] {
            tab(2, lesTB);
            pickLine(clientLB, 2);
            Display* const display = XtDisplay(named(clientLB));
            inSubDialog(insertBTN, "moveClients", [&] {
                for (int line = 1; line <= count; ++line) XmListSelectPos(named(availableLB), line, False);
                user->settle();
                requests = NextRequest(display);
                press(subOkBTN);
            });
            requests = NextRequest(display) - requests;
            EXPECT_GE(resourceOf<int>(named(clientLB), XmNitemCount), count);
            press(cancelBTN);
        });
        EXPECT_EQ(told().size(), 2U * static_cast<std::size_t>(count));
        EXPECT_EQ(root.read("/etc/atm/elan0.0"), "");
        window.reset();
        return requests;
    };
    const unsigned long few = requestsFor(40);
    EXPECT_LT(requestsFor(1000), 2 * few);
}

TEST_F(PagesTest, ADriverThatDoesNotAnswerIsNotAskedForEachClientThatMoves) {
    startAdvanced();
    simulator->ctl("fault lecs.unmap every errno ETIME");
    expectBoxes(Names(4, "ELAN Client Error"), [&] {
        turnTo("lesPage");
        tab(2, lesTB);
        insertClients(2, 3);
        EXPECT_EQ(lines(clientLB).size(), 5U);
        press(cancelBTN);
    });
    EXPECT_EQ(told(), Names{"lecs.unmap 0"});
}

TEST_F(PagesTest, ClientsWithoutAClientTableAreNotLostInSilence) {
    for (const std::string list : {"elan0.0", "elan0.2"})
        edit(parameterFile, "ElanTbl                 = /etc/atm/" + list, "#");
    startAdvanced();
    for (const int way : {cancelBTN, okBTN}) {
        expectBoxes({"ELAN Client Error"}, [&] {
            turnTo("lesPage");
            const char* client = way == cancelBTN ? "0020400000ee" : "0020400000ff";
            inSubDialog(addBTN, "elanClient", {{esiSelectorED, client}});
            press(way);
        });
        EXPECT_EQ(boxText, "Unable to save the ELAN clients of:LES 1"
                           "The parameter file names no client table (ElanTbl) for them.");
    }
    EXPECT_EQ(atmDevices.les[0][0].clients.size(), 2U) << "they stay in the program";
}

TEST_F(PagesTest, ADriverThatComesWhileTheDialogIsOpenIsToldOfChanges) {
    openWindow();
    // At Setup, and no question for consent.
    expectBoxes({"Driver Error"}, [&] {
        turnTo("ip1577Page");
        startDriver("1");
        selectRow(1);
        press(deleteBTN);
        press(cancelBTN);
    });
    EXPECT_EQ(told(), Names{"ip.pvc-delete 0"});
}

TEST_F(PagesTest, RoutedPvcsAreAddedModifiedAndDeleted) {
    startAdvanced();
    configure("ip1577Page", [&] {
        press(deleteBTN);  // nothing is selected yet: these do nothing, without a word
        press(modifyBTN);
        EXPECT_EQ(user->shellLike("PVC Settings"), nullptr);
        EXPECT_EQ(pvcRows(), Names{"192.168.10.200 | 0 / 120 | LLC_SNAP"});
        inSubDialog(addBTN, "ipPvc", {{pvcIpED, "192.168.10.9"}, {pvcVciED, "77"}});
        inSubDialog(modifyBTN, "ipPvc", [&] {
            EXPECT_EQ(text(pvcIpED), "192.168.10.9");
            fill({{nullRB}, {subOkBTN}});
        });
        selectRow(1);
        press(deleteBTN);
        EXPECT_EQ(pvcRows(), Names{"192.168.10.9 | 0 / 77 | NULL"});
        press(cancelBTN);
    });
    EXPECT_EQ(told(), (Names{"ip.pvc-add 0", "ip.pvc-change 0", "ip.pvc-delete 0"}));
    EXPECT_NE(root.read("/etc/atm/pvcconf0.32").find("192.168.10.9"), std::string::npos);
}

// The adapter is its own ATMARP server exactly when the server's address is its own.
TEST_F(PagesTest, TheArpServersAddressFollowsItsBox) {
    startAdvanced();
    const int own[] = {pvcOnlyCB,   ipED,   ipLBL,  subnetMaskED, subnetMaskLBL,
                       pvcTableLBL, pvcTBL, addBTN, modifyBTN,    deleteBTN},
              foreign[] = {serverIpED,       serverIpLBL,   networkPrefixED,
                           networkPrefixLBL, esiSelectorED, esiSelectorLBL};
    const auto expectUsable = [&](bool enabled, bool server, bool address) {
        for (const int id : own) EXPECT_EQ(usable(id), enabled) << id;
        EXPECT_EQ(usable(serverCB), server);
        for (const int id : foreign) EXPECT_EQ(usable(id), address) << id;
    };
    configure("ip1577Page", [&] {
        EXPECT_TRUE(on(serverCB));
        EXPECT_EQ(text(serverIpED), "192.168.10.1");
        expectUsable(true, true, false);
        press(serverCB);
        expectUsable(true, true, true);
        enter(serverIpED, "192.168.10.99");
        enter(ipED, "10.0.0.1");
        press(serverCB);
        EXPECT_EQ(text(serverIpED), "192.168.10.1") << "the address that was loaded";
        expectUsable(true, true, false);
        press(pvcOnlyCB);
        expectUsable(true, false, false);
        press(enableCB);
        expectUsable(false, false, false);
        press(enableCB);
        press(pvcOnlyCB);
        press(serverCB);
        EXPECT_EQ(text(serverIpED), "192.168.10.99") << "what was typed";
        press(serverCB);
        press(okBTN);
    });
    EXPECT_EQ(atmDevices.ip1577[0].serverIp.view(), "192.168.10.1");
    EXPECT_EQ(atmDevices.ip1577[0].ip.view(), "10.0.0.1") << "no longer its own server";
    EXPECT_EQ(told(), (Names{"ip.start 0", "ip.pvc-add 0"}));
    expectTheFilesHold(dump());
}
