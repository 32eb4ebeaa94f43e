#include <gtest/gtest.h>  // before the window system's macros

#include "tests/toolkit/desk.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/messagebox.h"

#include <X11/Shell.h>
#include <Xm/Xm.h>
#include <memory>

namespace {

constexpr zControlRow rows[] = {
    {.id = 11, .kind = zKind::staticText, .place = {4, 4, 80, 8}, .text = "A label:"},
    {.id = 12, .kind = zKind::listBox, .place = {4, 20, 100, 40}},
    {.id = 13, .kind = zKind::edit, .place = {4, 70, 60, 12}, .style = zReadOnly},
    {.id = 14,
     .kind = zKind::bitmapButton,
     .place = {120, 4, 50, 18},
     .text = "Press",
     .tooltip = "Presses it"},
    {.kind = zKind::frame, .place = {112, 0, 1, 90}, .name = "line"},
};
constexpr zLayout layout{
    .id = 1, .name = "probe", .caption = "A probe", .width = 180, .height = 90, .rows = rows};

constexpr zLayout above{.id = 2, .name = "above", .caption = "Above", .width = 90, .height = 90, .rows = {}};

class WindowTest : public testing::Test {
  protected:
    zApplication& application = desk().application;
    zFormDialog window{application, layout};
    XUser user{application};

    void SetUp() override {
        ASSERT_TRUE(desk().open);
        window.show();
        ASSERT_TRUE(user.until([&] { return user.shellTitled("A probe") != nullptr; }));
        user.focus(window.shell());
    }
};

zRect placeOf(Widget widget) {
    Position x = 0, y = 0;
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNx, &x, XmNy, &y, XmNwidth, &width, XmNheight, &height, nullptr);
    return {x, y, width, height};
}

}  // namespace

TEST_F(WindowTest, ControlsStandWhereTheLayoutSaysInTheFontsUnits) {
    const zDialogUnits units = zDialogUnits::ofBoard(XtParent(user.widget("id11")));
    EXPECT_EQ(units.baseWidth(), 10);
    EXPECT_EQ(units.baseHeight(), 19);
    window.control<zListBox>(12).setLines({"one", "two", "three", "four", "five", "six", "seven"});
    user.settle();
    for (const zControlRow& row : rows) {
        Widget widget = user.widget(row.id >= 0 ? "id" + std::to_string(row.id) : row.name);
        ASSERT_TRUE(widget) << row.id;
        if (row.kind == zKind::listBox) widget = XtParent(widget);
        const zRect expected = units.pixels(row.place), found = placeOf(widget);
        EXPECT_EQ(std::tie(found.x, found.y, found.width, found.height),
                  std::tie(expected.x, expected.y, expected.width, expected.height))
            << row.id;
    }
    const zRect shell = placeOf(window.shell());
    EXPECT_EQ(shell.width, 450);
    EXPECT_EQ(shell.x, (1280 - 450) / 2);
}

TEST_F(WindowTest, UsersResourcesReachAControlByItsId) {
    Pixel background = 0;
    XtVaGetValues(user.widget("id13"), XmNbackground, &background, nullptr);
    EXPECT_EQ(background & 0xffffff, 0xff0000UL);
}

TEST_F(WindowTest, ListSelectsByMouseAndKeyboardAndActivatesOnDoubleClickAndReturn) {
    auto& list = window.control<zListBox>(12);
    int selections = 0, activations = 0;
    list.onSelect = [&] { ++selections; };
    list.onActivate = [&] { ++activations; };
    EXPECT_EQ(list.selected(), -1);
    list.select(0);
    EXPECT_EQ(list.selected(), -1) << "nothing to select in an empty list";
    list.setLines({"one", "", "three"});
    list.select(0);
    EXPECT_EQ(list.selected(), 0);
    EXPECT_EQ(selections, 0) << "selecting by program";
    user.clickAt(list.widget(), 20, 50);
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(list.line(list.selected()), "three");
    EXPECT_EQ(selections, 1);
    user.key("Up");
    EXPECT_EQ(list.selected(), 1) << "a line without text can be chosen, too";
    user.key("Return");
    EXPECT_EQ(activations, 1);
    user.clickAt(list.widget(), 20, 10, 2);
    EXPECT_EQ(activations, 2);
    EXPECT_EQ(list.selected(), 0);
}

TEST_F(WindowTest, TabFollowsTheLayoutAndReadOnlyTextCannotBeTyped) {
    const auto focused = [&] { return std::string(XtName(XmGetFocusWidget(window.shell()))); };
    auto& edit = window.control<zEdit>(13);
    edit.setText("fixed \x80\x01 text");
    EXPECT_EQ(edit.text(), "fixed ?? text") << "what cannot be shown as a character";
    EXPECT_EQ(focused(), "id12");
    user.key("Tab");
    EXPECT_EQ(focused(), "id13");
    user.key("a");
    EXPECT_EQ(edit.text(), "fixed ?? text");
    user.key("Tab");
    EXPECT_EQ(focused(), "id14");
    int clicks = 0;
    window.control<zBitmapButton>(14).onClick = [&] { ++clicks; };
    user.key("space");
    EXPECT_EQ(clicks, 1);
    window.control<zBitmapButton>(14).enable(false);
    user.click(user.widget("id14"));
    EXPECT_EQ(clicks, 1) << "greyed";
}

TEST_F(WindowTest, AHandlerMayDestroyItsOwnWindow) {
    auto doomed = std::make_unique<zFormDialog>(application, layout);
    doomed->show();
    user.settle();
    doomed->control<zBitmapButton>(14).onClick = [&] { doomed.reset(); };
    user.click(doomed->control<zBitmapButton>(14).widget());
    EXPECT_TRUE(user.until([&] { return !doomed; }));
    user.settle();
}

TEST_F(WindowTest, TooltipAppearsAlsoOnGreyedControlsAndLeavesTheKeyboardAlone) {
    auto& button = window.control<zBitmapButton>(14);
    const auto shown = [&] { return user.widget("TipLabel") != nullptr; };
    for (const bool enabled : {false, true}) {
        button.enable(enabled);
        user.pointAt(user.widget("id14"));
        EXPECT_TRUE(user.until(shown)) << enabled;
        if (!enabled)
            user.pointAt(user.widget("id11"));
        else
            user.key("Tab");
    }
    EXPECT_TRUE(shown());
    EXPECT_STREQ(XtName(XmGetFocusWidget(window.shell())), "id13");
    user.click(user.widget("id14"));
    EXPECT_FALSE(shown()) << "pressing takes it away";
}

TEST_F(WindowTest, MessageBoxIsModalAndEndsWithOkReturnOrEscape) {
    int clicksBehind = 0;
    window.control<zBitmapButton>(14).onClick = [&] { ++clicksBehind; };
    const auto shown = [&] { return user.shellTitled("A title") != nullptr; };
    const std::function<void()> ways[] = {[&] { user.key("Return"); }, [&] { user.key("Escape"); },
                                          [&] {
                                              user.click(user.widget("id14"));
                                              user.click(user.widget("Cancel"));
                                          }};
    for (const auto& way : ways) {
        user.when(shown, [&] {
            user.focus(user.shellTitled("A title"));
            way();
        });
        zMessageBox(application, window.shell(), zMessageStyle::warning, "Two\nlines", "A title");
        user.settle();
        EXPECT_FALSE(shown());
    }
    EXPECT_EQ(clicksBehind, 0);
}

TEST_F(WindowTest, AWindowUnderAModalOneIsNotClosed) {
    int closings = 0;
    window.onClose = [&] { ++closings; };
    const auto ask = [&](Widget shell) {
        user.askToClose(shell);
        user.settle();
    };
    zFormDialog dialog(window, above);
    const auto shown = [&] { return user.shellTitled("A title") != nullptr; };
    dialog.onClose = [&] { dialog.endModal(); };
    user.when([&] { return user.shellTitled("Above") != nullptr; },
              [&] {
                  ask(window.shell());
                  user.when(shown, [&] {
                      ask(window.shell());
                      ask(dialog.shell());
                      EXPECT_TRUE(shown());
                      ask(user.shellTitled("A title"));
                  });
                  zMessageBox(application, dialog.shell(), zMessageStyle::warning, "Text", "A title");
                  EXPECT_TRUE(user.shellTitled("Above"));
                  ask(dialog.shell());
              });
    dialog.runModal();
    EXPECT_EQ(closings, 0);
    ask(window.shell());
    EXPECT_EQ(closings, 1);
}

// Within a callback, shells are destroyed at its end only; a second request to close can arrive before that.
TEST_F(WindowTest, WhatHasEndedHearsNoLateRequestToClose) {
    const auto closeTwice = [&](const char* title) {
        const auto shown = [&, title] { return user.shellTitled(title) != nullptr; };
        user.when(shown, [&, title] {
            const Widget shell = user.shellTitled(title);
            user.askToClose(shell);
            user.askToClose(shell);
        });
    };
    int seen = 0;
    window.control<zBitmapButton>(14).onClick = [&] {
        closeTwice("Above");
        auto dialog = std::make_unique<zFormDialog>(window, above);
        dialog->onClose = [raw = dialog.get()] { raw->endModal(); };
        dialog->runModal();
        dialog.reset();
        for (const char* title : {"First", "Second"}) {
            closeTwice(title);
            zMessageBox(application, window.shell(), zMessageStyle::warning, "Text", title);
            ++seen;
        }
    };
    user.click(user.widget("id14"));
    EXPECT_EQ(seen, 2);
}

TEST_F(WindowTest, AMissingControlOrAnotherKindIsNamed) {
    const auto messageOf = [&](auto key) -> std::string {
        try {
            window.board().control<zEdit>(key);
        } catch (const std::logic_error& error) {
            return error.what();
        }
        return "found";
    };
    const std::string begin = "the layout \"probe\" has no control \"", end = "\" of the expected kind";
    EXPECT_EQ(messageOf(99), begin + "id99" + end);
    EXPECT_EQ(messageOf(14), begin + "id14" + end);
    EXPECT_EQ(messageOf("line"), begin + "line" + end);
    EXPECT_EQ(messageOf(13), "found");
}
