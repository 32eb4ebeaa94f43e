// Steps in the configuration dialog and what came of them.
#pragma once

#include "tests/e2e/programtest.h"
#include "tests/e2e/tool.h"
#include "toolkit/table/table.h"
#include "ui/config/confids.h"
#include "ui/config/elandlg.h"
#include "ui/config/ippvcdlg.h"
#include "ui/config/lcpvcdlg.h"
#include "ui/subdialog.h"

#include <Xm/ComboBox.h>
#include <Xm/List.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

constexpr const char* parameterFile = "/etc/atm/tvconf";

// The text of the box about a save that failed.
constexpr const char* fileIsOld = "The driver keeps what it accepted; the file was not updated.";
inline std::string saveFailed(const char* file, const char* reason, const char* end = fileIsOld) {
    return fmt::format("Unable to save the configuration:{}: {}{}", file, reason, end);
}

// Lines of one text that the other does not have in their place: "-old" and "+new".
inline std::vector<std::string> differences(const std::string& before, const std::string& after) {
    std::istringstream a(before), b(after);
    std::vector<std::string> found;
    for (std::string old, now;;) {
        const bool more = static_cast<bool>(std::getline(a, old)),
                   moreNow = static_cast<bool>(std::getline(b, now));
        if (!more && !moreNow) return found;
        if (more && moreNow && old == now) continue;
        if (more) found.push_back("-" + old);
        if (moreNow) found.push_back("+" + now);
    }
}

class ConfigurationTest : public ProgramTest {
  protected:
    // What the driver was told to do since the last call: the names of the requests and their instance.
    Names told() {
        Names names;
        for (const auto& [name, unit] : loggedRequests())
            for (const char* part :
                 {".start", ".stop", ".pvc-", ".load", ".map", ".unmap", ".go", "trace.set"})
                if (name.find(part) != name.npos) names.push_back(name + ' ' + unit);
        return names;
    }

    // Presses Setup and does the steps on this page of the notebook; they have to close it.
    void configure(const std::string& page, const std::function<void()>& session) {
        ProgramTest::configure([&] {
            turnTo(page);
            session();
        });
    }
    void configure(const std::function<void()>& session) { configure("lecPage", session); }
    // The same, when exactly these message boxes come up; each is dismissed with the key.
    void expectBoxes(const Names& titles, const char* key, const std::function<void()>& session) {
        EXPECT_EQ(boxesOf([&] { configure(session); }, key), titles);
    }
    void expectBoxes(const Names& titles, const std::function<void()>& session) {
        expectBoxes(titles, "Return", session);
    }

    // A control of the page that is on top, or of the dialog above it: pages share ids.
    Widget named(int id) {
        Widget found = user->widget(fmt::format("{}*id{}", page_, id));
        if (!found) found = user->widget(id);
        EXPECT_TRUE(found) << id;
        return found;
    }
    // Clicks on the tab of the page with this board name.
    void turnTo(const std::string& page) {
        ProgramTest::turnTo(user->widget(pagesNB), user->widget(page));
        page_ = page;
    }
    // From here on controls are those of this page.
    void lookAt(const std::string& page) { page_ = page; }
    void press(int id) { user->click(named(id)); }
    bool on(int id) { return XmToggleButtonGetState(named(id)); }
    bool usable(int id) { return XtIsSensitive(named(id)); }

    std::string text(int id) { return XUser::textOf(named(id)); }
    // Replaces what stands in a field, as a user does.
    void enter(int id, const std::string& value) {
        press(id);
        user->key("slash", "Control_L");  // select all
        user->key("Delete");
        user->type(value);
    }
    void choose(int id, const char* key) {
        XmProcessTraversal(named(id), XmTRAVERSE_CURRENT);
        user->key(key);
    }
    std::string shownItem(int id) { return XUser::textOf(XtNameToWidget(named(id), "*Text")); }
    void tab(int number, int strip = lecTB) {  // "LEC 1" is 1
        user->clickAt(named(strip), 64 * number - 35, 15);
    }
    Names lines(int id) {
        int count = 0;
        XmStringTable items = nullptr;
        XtVaGetValues(named(id), XmNitemCount, &count, XmNitems, &items, nullptr);
        Names all;
        for (int i = 0; i < count; ++i) all.push_back(XUser::plain(items[i]));
        return all;
    }
    void pickLine(int id, int line) {  // from 1
        Position x = 0, y = 0;
        Dimension width = 0, height = 0;
        ASSERT_TRUE(XmListPosToBounds(named(id), line, &x, &y, &width, &height)) << "not to be seen";
        const int clicks = XtGetMultiClickTime(XtDisplay(named(id)));  // closer together they are one
        std::this_thread::sleep_for(std::chrono::milliseconds(clicks + 20));
        user->clickAt(named(id), x + 20, y + height / 2);
    }
    zTable& table() { return XUser::tableIn(named(pvcTBL)); }
    Names pvcRows() {
        Names rows;
        for (int row = 1; row <= table().model().rows(); ++row) {
            std::string line;
            for (int column = 1; column <= table().model().columns(); ++column)
                line += (column > 1 ? " | " : "") + std::string(table().model().text({column, row}));
            rows.push_back(line);
        }
        return rows;
    }
    void selectRow(int row) {
        user->clickAt(XtNameToWidget(named(pvcTBL), "*cells"), 60, 22 + 20 * row - 10);
        EXPECT_EQ(table().activeCell().row, row);
    }

    // What is typed into a field, or the key for a list; a box or a button is clicked on.
    struct Edit {
        int id;
        std::string value = "";
    };
    void fill(const std::vector<Edit>& edits) {
        for (const Edit& edit : edits) {
            const Widget control = named(edit.id);
            if (XtIsSubclass(control, xmComboBoxWidgetClass))
                choose(edit.id, edit.value.c_str());
            else if (XmIsTextField(control))
                enter(edit.id, edit.value);
            else
                press(edit.id);
        }
    }
    // Presses the button and does the steps in the dialog that comes up, by its name.
    void inSubDialog(int button, const std::string& dialog, const std::function<void()>& steps) {
        user->when([=, this] { return user->widget(dialog) != nullptr; },
                   [=, this] {
                       user->focus(user->widget(dialog));
                       const std::string page = std::exchange(page_, dialog);
                       steps();
                       page_ = page;
                   });
        press(button);
    }
    // The same with edits, which are confirmed.
    void inSubDialog(int button, const std::string& dialog, const std::vector<Edit>& edits) {
        inSubDialog(button, dialog, [&] {
            fill(edits);
            press(subOkBTN);
        });
    }
    // On the LEC page.
    void addPvc() { inSubDialog(addBTN, "lecPvc", {{pvcVciED, "204"}}); }

    void edit(const std::string& file, const std::string& from, const std::string& to) {
        root.edit(file, from, to);
    }
    std::map<std::string, std::string> files() { return root.files("/etc/atm"); }

    std::string dump() { return simulator->ctl("dump config"); }

    // A simulator that starts on the files as they are now knows the same configuration.
    void expectTheFilesHold(const std::string& configuration) {
        window.reset();
        startDriver();
        EXPECT_EQ(differences(configuration, dump()), Names{});
    }

  private:
    std::string page_ = "lecPage";
};
