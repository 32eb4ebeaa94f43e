// What happens around the configuration dialog: pages that nobody looked at, and saves that fail or have
// nothing to do.
#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/configurationtest.h"
#include "tests/support/scripteddriver.h"

#include <filesystem>

class SetupTest : public ConfigurationTest {
  protected:
    // What the debug log got during the action.
    std::string logOf(const std::function<void()>& action) {
        LogCapture log;
        action();
        return log.take();
    }
};

TEST_F(SetupTest, PagesThatNobodyLookedAtAreCreatedInOrderAndStored) {
    const std::string file = root.read(parameterFile);
    const std::size_t les0 = file.find("[LES0"), les1 = file.find("[LES1"), lecs = file.find("[LECS0");
    std::string edited = file;
    for (const std::size_t section : {lecs, les1, les0}) {
        const std::size_t value = edited.find_first_of("0123456789", edited.find("ElanType", section));
        edited[value] = '7';
    }
    root.write(parameterFile, edited);
    start({"--frozen", "--adapters", "1"});
    advSettings = 1;
    const std::string log = logOf([&] { configure([&] { press(okBTN); }, "signalPage"); });
    std::size_t at = 0;
    for (const char* line :
         {"creating Signalling page\n", "creating LEC Page\n", "creating LES page\n", "creating LECS page\n",
          "creating 1577 page\n", "Les0 ELAN type 7 becomes 2\n", "Lecs ELAN type 7 becomes 2\n"}) {
        at = log.find(line, at);
        ASSERT_NE(at, std::string::npos) << line << log;
    }
    EXPECT_EQ(log.find("Les1 ELAN type"), std::string::npos) << "only the server that a page shows is stored";
    EXPECT_EQ(atmDevices.les[0][0].elanType, 2);
    EXPECT_EQ(atmDevices.les[0][1].elanType, 7);
    EXPECT_EQ(atmDevices.lecs[0].elanType, 2);
}

TEST_F(SetupTest, ClicksOnLecsAndLesKeepTheAddressThatWasTyped) {
    start({"--frozen", "--adapters", "1"});
    configure([&] {  // the first client uses the LECS
        enter(networkPrefixED, "39");
        const std::string own = text(esiSelectorED);
        for (const char* typed : {"", "41"}) {
            if (*typed) enter(networkPrefixED, typed);
            press(lecsRB);
            EXPECT_EQ(text(networkPrefixED), "47:00:79:00:00:00:00:00:00:00:00:00:00") << typed;
            EXPECT_EQ(text(esiSelectorED), "00:A0:3E:00:00:01-00") << typed;
        }
        press(lesRB);
        EXPECT_EQ(text(networkPrefixED), "39:00:00:00:00:00:00:00:00:00:00:00:00");
        EXPECT_EQ(text(esiSelectorED), own);
        enter(networkPrefixED, "43");
        press(lesRB);
        EXPECT_EQ(text(networkPrefixED), "43:00:00:00:00:00:00:00:00:00:00:00:00");
        user->key("Escape");
    });
}

TEST_F(SetupTest, NoRoutedPvcIsSelectedBeforeSomebodySelectsOne) {
    start({"--frozen", "--adapters", "1"});
    told();
    configure(
        [&] {
            const Names before = pvcRows();
            ASSERT_FALSE(before.empty());
            press(deleteBTN);
            press(modifyBTN);
            EXPECT_EQ(user->shellLike("PVC Settings"), nullptr);
            EXPECT_EQ(pvcRows(), before);
            EXPECT_EQ(told(), Names{});
            selectRow(1);
            press(deleteBTN);
            EXPECT_EQ(told(), Names{"ip.pvc-delete 0"});
            user->key("Escape");
        },
        "ip1577Page");
}

TEST_F(SetupTest, AFailedSaveWithoutAChangeSpeaksOfNone) {
    start({"--frozen", "--adapters", "1,2"});
    std::filesystem::remove(root.at(parameterFile));
    std::filesystem::create_directory(root.at(parameterFile));
    EXPECT_EQ(boxesOf([&] { configure([&] { press(okBTN); }); }), Names{"Configuration Error"});
    EXPECT_EQ(boxText, "Unable to save the configuration:/etc/atm/tvconf: Is a directory");
}

// The last sentence of the box says only what is so.
TEST_F(SetupTest, AnAdapterWithoutASectionIsAMatterOnlyWhenSomethingWasChanged) {
    const std::string file = root.read(parameterFile);
    const std::string first = file.substr(0, file.find("[Adapter1"));
    const std::string missing =
        "Unable to save the configuration:/etc/atm/tvconf: the section /Adapter1 is missing";
    const struct {
        const char* name;
        std::vector<std::string> commands;
        bool changed;
        std::string text;  // of the box; empty: there is none
    } cases[] = {
        {"nothing changed", {}, false, ""},
        {"accepted", {}, true, missing + "The driver keeps what it accepted; the file was not updated."},
        {"refused", {"fault lec.control every resp 9"}, true, missing + "The change is not in the file."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        root.write(parameterFile, first);
        atmDevices = AtmDevices();
        start({"--frozen", "--adapters", "1,2"}, c.commands);
        user->clickAt(list().widget(), 20, 30);
        ASSERT_EQ(list().selected(), 1);
        const auto session = [&] {
            configure([&] {
                if (c.changed) press(enableCB);
                press(okBTN);
            });
        };
        EXPECT_EQ(boxesOf(session), c.text.empty() ? Names{} : Names{"Configuration Error"});
        EXPECT_EQ(boxText, c.text);
        window.reset();
    }
}
