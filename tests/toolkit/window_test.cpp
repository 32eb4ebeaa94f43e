#include "tests/toolkit/desk.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/window/messagebox.h"

#include <X11/Shell.h>
#include <X11/extensions/XTest.h>
#include <Xm/Display.h>

namespace {

constexpr zControlRow rows[] = {
    {.id = 11, .kind = zKind::staticText, .place = {4, 4, 80, 8}, .text = "A label:"},
    {.id = 12, .kind = zKind::listBox, .place = {4, 20, 100, 40}},
    {.id = 13, .kind = zKind::edit, .place = {4, 70, 60, 12}, .style = zReadOnly},
    {.id = 14, .kind = zKind::bitmapButton, .place = {120, 4, 50, 18}, .text = "Press", .tooltip = "Tip"},
    {.kind = zKind::frame, .place = {112, 0, 1, 90}, .name = "line"},
};
constexpr zLayout layout{
    .id = 1, .name = "probe", .caption = "A probe", .width = 180, .height = 90, .rows = rows};

constexpr zLayout above{.id = 2, .name = "above", .caption = "Above", .width = 90, .height = 90, .rows = {}};

class WindowTest : public DeskTest {
  protected:
    WindowTest() : DeskTest(layout) {}
};

}  // namespace

TEST_F(WindowTest, ControlsStandWhereTheLayoutSaysInTheFontsUnits) {
    const zDialogUnits units = zDialogUnits::ofBoard(XtParent(user.widget("id11")));
    EXPECT_EQ(units.baseHeight(), 19);
    window.control<zListBox>(12).setLines({"one", "two", "three", "four", "five", "six", "seven"});
    user.settle();
    for (const zControlRow& row : rows) {
        Widget widget = user.widget(row.id >= 0 ? "id" + std::to_string(row.id) : row.name);
        ASSERT_TRUE(widget) << row.id;
        if (row.kind == zKind::listBox) widget = XtParent(widget);
        EXPECT_EQ(numbers(placeOf(widget)), numbers(units.pixels(row.place))) << row.id;
    }
    EXPECT_EQ(placeOf(window.shell()).width, 450);
    EXPECT_EQ(placeOf(window.shell()).x, (1280 - 450) / 2);
}

TEST_F(WindowTest, AReadOnlyTextCannotBeTypedAndAGreyedButtonNotPressed) {
    auto& edit = window.control<zEdit>(13);
    auto& button = window.control<zBitmapButton>(14);
    int clicks = 0;
    button.onClick = [&] { ++clicks; };
    edit.setText("fixed \x80\x01 text");
    for (const char* key : {"Tab", "a", "Tab", "space"}) user.key(key);
    EXPECT_EQ(edit.text(), "fixed ?? text") << "with '?' for what cannot be shown as a character";
    EXPECT_EQ(clicks, 1);
    button.enable(false);
    user.click(button.widget());
    EXPECT_EQ(clicks, 1);
}

TEST_F(WindowTest, TooltipAppearsAlsoOnGreyedControlsAndLeavesTheKeyboardAlone) {
    auto& button = window.control<zBitmapButton>(14);
    const auto shown = [&] { return user.widget("TipLabel") != nullptr; };
    for (const bool enabled : {false, true}) {
        button.enable(enabled);
        user.pointAt(user.widget("id14"));
        EXPECT_TRUE(user.until(shown)) << enabled;
        if (!enabled) user.pointAt(user.widget("id11"));
    }
    const Widget focused = XmGetFocusWidget(window.shell());
    EXPECT_NE(focused, user.widget("id13"));
    user.key("Tab");
    EXPECT_EQ(XmGetFocusWidget(window.shell()), user.widget("id13"));
    EXPECT_FALSE(shown()) << "a key takes it away";
    user.pointAt(user.widget("id11"));
    user.pointAt(user.widget("id14"));
    EXPECT_TRUE(user.until(shown));
    user.click(user.widget("id11"));
    EXPECT_FALSE(shown()) << "so does a press, wherever it is";
    user.pointAt(user.widget("id14"));
    user.key("Tab");
    user.until([] { return false; }, 0.3);
    EXPECT_FALSE(shown()) << "a key before it comes";
}

TEST_F(WindowTest, AMessageBoxKeepsClicksFromTheWindowBehind) {
    int clicksBehind = 0;
    window.control<zBitmapButton>(14).onClick = [&] { ++clicksBehind; };
    user.when(shown("A title"), [&] {
        user.click(user.widget("id14"));
        user.click(user.widget("Cancel"));
    });
    zMessageBox(application, window.shell(), zMessageStyle::warning, "Two\nlines", "A title");
    user.settle();
    EXPECT_FALSE(user.shellLike("A title"));
    EXPECT_EQ(clicksBehind, 0);
}

// The library would leave the drag icon behind if the box closed meanwhile.
TEST_F(WindowTest, ATextOfABoxIsNothingToBeDragged) {
    Display* const display = XtDisplay(window.shell());
    const auto dragged = [&] {
        Cardinal contexts = 0;
        XtVaGetValues(XmGetXmDisplay(display), XmNnumChildren, &contexts, nullptr);
        return contexts;
    };
    const Cardinal before = dragged();
    user.when(shown("A title"), [&] {
        const Widget shell = user.shellLike("A title");
        Position x = 0, y = 0;
        XtTranslateCoords(shell, 0, 0, &x, &y);
        for (const int across : {60, 90, 120}) {
            XTestFakeMotionEvent(display, -1, x + across, y + 20, 0);
            XTestFakeButtonEvent(display, 2, True, 0);
            user.settle();
            EXPECT_EQ(dragged(), before) << across;
            XTestFakeButtonEvent(display, 2, False, 0);
            user.settle();
        }
        user.focus(shell);
        user.key("Return");
    });
    zMessageBox(application, window.shell(), zMessageStyle::warning, "A text that is as wide as it needs",
                "A title");
}

TEST_F(WindowTest, ABoxWithALongTextFitsItsScreen) {
    std::string lines, many;
    for (int i = 0; i < 50; ++i) lines += "/a/directory/with a blank/" + std::string(90, 'x') + '\n';
    for (int i = 0; i < 10; ++i) many += lines;
    const struct {
        const char* title;
        std::string text;
        bool cut = false;
    } boxes[] = {{"Short", "Two\nlines"},
                 {"High", lines + "end"},
                 {"Wide", "Reason:\n\n" + std::string(600, 'w') + "\nend"},
                 {"Too high", many + "\nOK does this. Cancel does that.", true}};
    for (const auto& box : boxes) {
        user.when(shown(box.title), [&] {
            const Widget shell = user.shellLike(box.title);
            const auto [x, y, width, height] = placeOf(shell);
            const Screen* screen = XtScreen(shell);
            EXPECT_TRUE(x >= 0 && y >= 0 && x + width <= WidthOfScreen(screen) &&
                        y + height <= HeightOfScreen(screen))
                << box.title << ' ' << x << ' ' << y << ' ' << width << ' ' << height;
            std::string text = box.text, shows = XUser::messageOf(shell);
            std::erase(text, '\n');
            if (box.cut) {
                EXPECT_TRUE(shows.ends_with("xOK does this. Cancel does that.")) << shows;
                EXPECT_NE(shows.find("..."), std::string::npos);
            } else {
                EXPECT_EQ(shows, text);
            }
            user.focus(shell);
            user.key("Return");
        });
        zMessageBox(application, window.shell(), zMessageStyle::warning, box.text, box.title);
        user.settle();
    }
}

TEST_F(WindowTest, AWindowUnderAModalOneIsNotClosed) {
    int closings = 0;
    window.onClose = [&] { ++closings; };
    const auto ask = [&](Widget shell) {
        user.askToClose(shell);
        user.settle();
    };
    zFormDialog dialog(window, above);
    dialog.onClose = [&] { dialog.endModal(); };
    user.when(shown("Above"), [&] {
        ask(window.shell());
        user.when(shown("A title"), [&] {
            ask(window.shell());
            ask(dialog.shell());
            EXPECT_TRUE(user.shellLike("A title"));
            ask(user.shellLike("A title"));
        });
        zMessageBox(application, dialog.shell(), zMessageStyle::warning, "Text", "A title");
        EXPECT_TRUE(user.shellLike("Above"));
        ask(dialog.shell());
    });
    dialog.runModal();
    EXPECT_EQ(closings, 0);
    ask(window.shell());
    EXPECT_EQ(closings, 1);
}

TEST_F(WindowTest, AModalWindowThatAnotherClientDestroysIsClosed) {
    const auto destroy = [&](Widget shell) {
        Display* other = XOpenDisplay(DisplayString(XtDisplay(shell)));
        XDestroyWindow(other, XtWindow(shell));
        XCloseDisplay(other);
    };
    const auto destroyTitled = [&](const char* title) {
        user.when(shown(title), [&, title] { destroy(user.shellLike(title)); });
    };
    destroyTitled("A message");
    zMessageBox(application, window.shell(), zMessageStyle::warning, "Text", "A message");
    destroyTitled("A question");
    EXPECT_FALSE(zQuestionBox(application, window.shell(), "Text?", "A question"));

    zFormDialog dialog(window, above);
    int closings = 0, boxes = 0;
    dialog.onClose = [&] {
        ++closings;
        dialog.endModal();
    };
    user.when(shown("Above"), [&] {
        user.when(shown("A box"), [&] {
            ++boxes;
            destroy(dialog.shell());  // and closed when the box above it is
            user.settle();
            EXPECT_EQ(closings, 0);
            destroy(user.shellLike("A box"));
        });
        zMessageBox(application, dialog.shell(), zMessageStyle::warning, "Text", "A box");
    });
    dialog.runModal();
    EXPECT_EQ(closings, 1);
    EXPECT_EQ(boxes, 1);

    int clicks = 0;
    window.control<zBitmapButton>(14).onClick = [&] { ++clicks; };
    user.focus(window.shell());
    user.click(user.widget("id14"));
    EXPECT_EQ(clicks, 1) << "the window behind them can be used";
}

// Within a callback, shells are destroyed at its end only; a second request to close can arrive before that.
TEST_F(WindowTest, WhatHasEndedHearsNoLateRequestToClose) {
    const auto closeTwice = [&](const char* title) {
        user.when(shown(title), [&, title] {
            const Widget shell = user.shellLike(title);
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
