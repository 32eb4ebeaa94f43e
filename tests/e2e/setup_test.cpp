// What happens around the configuration dialog: pages that nobody looked at, and saves that fail or have
// nothing to do.
#include "tests/e2e/configurationtest.h"
#include "tests/support/failingfiles.h"
#include "tests/support/scripteddriver.h"

using SetupTest = ConfigurationTest;

TEST_F(SetupTest, PagesThatNobodyLookedAtAreCreatedInOrderAndStored) {
    const std::string file = root.read(parameterFile);
    const std::size_t les0 = file.find("[LES0"), les1 = file.find("[LES1"), lecs = file.find("[LECS0");
    std::string edited = file;
    for (const std::size_t section : {lecs, les1, les0}) {
        const std::size_t value = edited.find_first_of("0123456789", edited.find("ElanType", section));
        edited[value] = '7';
    }
    root.write(parameterFile, edited);
    start("1");
    advSettings = 1;
    LogCapture capture;
    configure("signalPage", [&] { press(okBTN); });
    const std::string log = capture.take();
    std::size_t at = 0;
    for (const char* line :
         {"creating Signalling page\n", "creating LEC Page\n", "creating LES page\n", "creating LECS page\n",
          "creating 1577 page\n", "Les0 ELAN type 7 becomes 2\n", "Lecs ELAN type 7 becomes 2\n"}) {
        at = log.find(line, at);
        ASSERT_NE(at, std::string::npos) << line << log;
    }
    EXPECT_EQ(log.find("Les1 ELAN type"), std::string::npos) << "only the server that a page shows is stored";
    EXPECT_EQ(atmDevices.les[0][1].elanType, 7);
    EXPECT_EQ(atmDevices.lecs[0].elanType, 2);
}

TEST_F(SetupTest, ClicksOnLecsAndLesKeepTheAddressThatWasTyped) {
    start("1");
    const std::string digits = "4700790000000000000000000000A03E00000100", zeros(24, '0');
    const auto expectAddress = [&](const std::string& prefix, const std::string& esi) {
        std::string shown = text(networkPrefixED) + text(esiSelectorED);
        std::erase_if(shown, [](char c) { return c == ':' || c == '-'; });
        EXPECT_EQ(shown, prefix + esi);
    };
    configure([&] {
        enter(networkPrefixED, "39");  // the first client uses the LECS
        const char* own = "00a03e00000100";
        for (const char* typed : {"", "41"}) {
            if (*typed) enter(networkPrefixED, typed);
            press(lecsRB);
            expectAddress(digits, "");
        }
        press(lesRB);
        expectAddress("39" + zeros, own);
        enter(networkPrefixED, "43");
        press(lesRB);
        expectAddress("43" + zeros, own);
        press(lecsRB);  // what was typed here is nothing to the next client
        tab(3);
        enter(networkPrefixED, "47123456");
        press(lecsRB);
        press(lecsRB);
        expectAddress(digits, "");
        press(lesRB);
        expectAddress("47123456" + zeros.substr(6), "00a03e00001112");
        press(lecsRB);
        press(okBTN);
    });
    EXPECT_EQ(atmDevices.lec[0][2].useLecs, 1);
    EXPECT_EQ(atmDevices.lec[0][2].address.digits(), digits);
}

TEST_F(SetupTest, AFailedSaveIsSaidOnceAndOfAChangeOnlyWhenThereIsOne) {
    start();
    std::filesystem::remove(root.at(parameterFile));
    std::filesystem::create_directory(root.at(parameterFile));
    for (const bool changed : {false, true}) {
        expectBoxes({"Configuration Error"}, [&] {
            if (changed) enter(elanNameED, "other");
            press(okBTN);
        });
        EXPECT_EQ(boxText, saveFailed(parameterFile, "Is a directory", changed ? fileIsOld : ""));
    }
}

// The last sentence of the box says only what is so.
TEST_F(SetupTest, AnAdapterWithoutASectionIsAMatterOnlyWhenSomethingWasChanged) {
    const std::string file = root.read(parameterFile);
    const std::string first = file.substr(0, file.find("[Adapter1"));
    const std::string missing = saveFailed(parameterFile, "the section /Adapter1 is missing", "");
    const std::string kept = missing + fileIsOld, lost = missing + "The change is not in the file.";
    const struct {
        const char *page, *fault;
        int clicked, close;  // clicked: a check box, or the button that adds a PVC; 0: nothing
        std::string text;    // of the box; empty: there is none
    } cases[] = {
        {"lecPage", "", 0, okBTN, ""},
        {"lecPage", "", enableCB, cancelBTN, ""},
        {"lecPage", "", enableCB, okBTN, kept},
        {"lecPage", "lec.control every resp 9", enableCB, okBTN, lost},
        {"lesPage", "", enableCB, okBTN, kept},
        {"lecsPage", "", enableCB, okBTN, kept},
        {"ip1577Page", "", enableCB, okBTN, kept},
        {"signalPage", "", addrRegCB, okBTN, lost},
        {"lecPage", "", addBTN, okBTN, kept},
        {"lecPage", "", addBTN, cancelBTN, kept},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.page) + ' ' + std::to_string(c.clicked) + c.fault);
        atmDevices = AtmDevices();
        root.write(parameterFile, file);
        startDriver();
        if (*c.fault) simulator->ctl(std::string("fault ") + c.fault);
        root.write(parameterFile, first);  // the driver has read it
        openWindow();
        atmDevices.lec[1][0].enabled = 1;  // as if a save of it had failed
        advSettings = 1;
        user->clickAt(list().widget(), 20, 30);
        ASSERT_EQ(list().selected(), 1);
        const Names boxes = boxesOf([&] {
            configure(c.page, [&] {
                if (c.clicked == addBTN)
                    addPvc();
                else if (c.clicked)
                    press(c.clicked);
                press(c.close);
            });
        });
        EXPECT_EQ(std::ranges::count(boxes, "Configuration Error"), c.text.empty() ? 0 : 1);
        EXPECT_EQ(boxTexts["Configuration Error"], c.text);
        EXPECT_EQ(boxTexts["Driver Error"],
                  *c.fault ? "The driver did not take everything:LEC 1: stop refused (9). It still runs."
                             "The file was not updated."
                           : "");
        window.reset();
    }
}

// Only then the new file is there, and nothing is said of the old one.
TEST_F(SetupTest, ADirectoryThatCannotBeSyncedLeavesTheNewFile) {
    start();
    std::optional<FailingFiles> files;
    expectBoxes({"Configuration Error"}, [&] {
        enter(elanNameED, "other");
        files.emplace();
        files->failAt(2, EIO, FileCall::sync, true);
        press(okBTN);
    });
    files.reset();
    EXPECT_EQ(boxText, saveFailed(parameterFile, "Input/output error", ""));
    EXPECT_EQ(nameOfClient(root, 1), "other");
}

// A system without a parameter file is asked about before anything is typed.
TEST_F(SetupTest, AFirstStartWritesTheParameterFileWhenTheUserWants) {
    const struct {
        const char *adapters, *key;  // without adapters there is no driver
        Names boxes, sections;
    } cases[] = {
        {"1,3", "Escape", {"Configuration Error", "Configuration Error"}, {}},
        {"1,3", "Return", {"Configuration Error"}, {"[Adapter0", "[Adapter2"}},
        {"",
         "Return",
         {"Configuration Error", "Driver Error"},
         {"[Adapter0", "[Adapter1", "[Adapter2", "[Adapter3"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.adapters) + c.key);
        window.reset();
        simulator.reset();
        atmDevices = AtmDevices();
        std::filesystem::remove_all(root.at("/etc/atm"));
        std::filesystem::create_directory(root.at("/etc/atm"));
        if (*c.adapters) startDriver(c.adapters);
        openWindow();
        std::string question, written;
        const Names boxes = boxesOf(
            [&] {
                configure("lecPage", [&] {
                    question = boxTexts["Configuration Error"];
                    if (root.exists(parameterFile)) written = root.read(parameterFile);
                    EXPECT_EQ(text(l3MtuED), "1");
                    press(okBTN);
                });
            },
            c.key);
        EXPECT_EQ(boxes, c.boxes);
        EXPECT_EQ(question, "There is no /etc/atm/tvconf.Write one with a section for each adapter?");
        Names sections;
        std::istringstream lines(written);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("[")) sections.push_back(line);
        EXPECT_EQ(sections, c.sections);
        EXPECT_EQ(root.exists(parameterFile), !c.sections.empty());
        if (c.sections.empty()) continue;
        EXPECT_EQ(root.read(parameterFile), written) << "OK without a change";
        EXPECT_EQ(boxesOf([&] {
                      configure("lecPage", [&] {
                          press(enableCB);
                          enter(elanNameED, "floor");
                          press(okBTN);
                      });
                  }),
                  *c.adapters ? nothing : Names{"Driver Error"});
        EXPECT_EQ(nameOfClient(root, 1), "floor");
    }
}
