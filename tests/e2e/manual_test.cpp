// F1 in every window.
#include "tests/e2e/configurationtest.h"
#include "ui/global/globlids.h"

#include <Xm/Text.h>

class ManualTest : public ConfigurationTest {
  protected:
    // The title of this window's part, which F1 opens and Escape closes again; the window has the keyboard
    // then.
    std::string part(Widget of) {
        user->key("F1");
        const auto manual = [this] { return user->shellLike("Tarvolin Manual"); };
        if (!user->until([&] { return manual() != nullptr; }, 3)) return "none";
        user->focus(manual());
        const std::unique_ptr<char, void (*)(char*)> text(XmTextGetString(user->widget(810)), XtFree);
        const std::string all = text.get();
        EXPECT_GT(all.size(), 150U) << all;
        EXPECT_TRUE(std::ranges::all_of(all, [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }))
            << all;
        user->key("Escape");
        EXPECT_TRUE(user->until([&] { return manual() == nullptr; }, 3)) << "it stays";
        user->focus(of);
        return all.substr(0, all.find('\n'));
    }
    // Of the dialog of a page's button, which it closes.
    void expectIn(int button, const char* dialog, const std::string& heading) {
        inSubDialog(button, dialog, [&] {
            EXPECT_EQ(part(user->widget(dialog)), heading);
            press(subCancelBTN);
        });
    }
};

// It takes the keyboard from the box, and gives it back.
TEST_F(ManualTest, OpensOverAMessageBox) {
    start();
    platform::pretendSuperUser(false);
    const auto manual = [this] { return user->shellLike("Tarvolin Manual"); };
    int opened = 0;
    inDialogOf(setupBTN, "Privilege Error", [&] {
        for (const bool byManager : {false, true, false}) {
            user->focus(user->shellLike("Privilege Error"));
            user->when([&] { return manual() != nullptr; },
                       [&] {
                           ++opened;
                           user->focus(manual());
                           if (byManager)
                               user->askToClose(manual());
                           else
                               user->key("Escape");
                       });
            user->key("F1");
            EXPECT_FALSE(manual());
        }
        user->focus(user->shellLike("Privilege Error"));
        user->key("Return");
    });
    EXPECT_EQ(opened, 3);
    platform::pretendSuperUser(true);
}

TEST_F(ManualTest, OpensThePartAboutTheWindow) {
    start();
    advSettings = 1;
    EXPECT_EQ(part(window->shell()), "MAIN WINDOW");
    configure([&] {
        const Widget setup = user->shellLike("Setup ");
        for (const int id :
             {pagesNB, lecTB, enableCB, elanNameED, elanTypeCBO, lecsRB, pvcTBL, addBTN, okBTN}) {
            const Widget control = user->widget(id);
            XmProcessTraversal(id == pvcTBL ? XtNameToWidget(control, "*cells") : control,
                               XmTRAVERSE_CURRENT);
            EXPECT_EQ(part(setup), "SETUP") << id;
        }
        expectIn(addBTN, "lecPvc", "PVC SETTINGS");
        turnTo("lesPage");
        expectIn(addBTN, "elanClient", "ADD ELAN CLIENT");
        expectIn(insertBTN, "moveClients", "INSERT ELAN CLIENTS");
        turnTo("ip1577Page");
        expectIn(addBTN, "ipPvc", "PVC SETTINGS");
        user->focus(setup);
        user->key("F1");  // goes with its window
        press(okBTN);
    });
    EXPECT_FALSE(user->shellLike("Tarvolin Manual"));
    inDialogOf(globalBTN, "Global Settings", [&] {
        const Widget settings = user->shellLike("Global Settings");
        EXPECT_EQ(part(settings), "GLOBAL SETTINGS");
        turnTo("applicationPage");
        inDialog("Table Font", [&] {
            EXPECT_EQ(part(user->shellLike("Table Font")), "TABLE FONT");
            user->key("Escape");
        });
        press(fontBTN);
        user->focus(settings);
        user->key("Escape");
    });
    user->click(window->control<zBitmapButton>(statsBTN).widget());
    const Widget statistics = user->shellLike("Statistics ");
    user->focus(statistics);
    EXPECT_EQ(part(statistics), "STATISTICS");
}
