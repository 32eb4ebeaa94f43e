#include "tests/toolkit/desk.h"
#include "toolkit/controls/board.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/choice.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/fieldmask.h"
#include "toolkit/controls/lamp.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/controls/tabstrip.h"
#include "toolkit/window/messagebox.h"
#include "toolkit/window/timer.h"

#include <csignal>

namespace {

constexpr const char* three[] = {"one", "two", "three"};

constexpr zFieldMask fourDigitAddress{
    .picture = "[0-9a-f][0-9a-f]':'[0-9a-f][0-9a-f]", .takes = "", .full = ""};
constexpr zFieldMask fourDigits{.picture = "####", .takes = "", .full = ""};

constexpr zControlRow pageRows[] = {
    {.id = 20, .kind = zKind::tabStrip, .place = {0, 0, 150, 20}, .items = three},
    {.kind = zKind::groupBox, .place = {4, 22, 140, 90}, .text = "Group", .name = "group"},
    {.id = 21, .kind = zKind::edit, .place = {8, 30, 80, 12}, .mask = &fourDigitAddress},
    {.id = 22, .kind = zKind::numberEdit, .place = {8, 44, 40, 12}, .mask = &fourDigits},
    {.id = 23, .kind = zKind::dropDown, .place = {8, 58, 60, 40}, .items = three},
    {.id = 24, .kind = zKind::checkBox, .place = {8, 74, 60, 12}, .text = "Check"},
    {.id = 25, .kind = zKind::radioButton, .place = {8, 88, 40, 10}, .text = "A", .style = zFirstOfGroup},
    {.id = 26, .kind = zKind::radioButton, .place = {50, 88, 40, 10}, .text = "B"},
    {.id = 27, .kind = zKind::lamp, .place = {100, 88, 30, 18}, .text = "Up"},
    {.id = 28, .kind = zKind::edit, .place = {8, 98, 60, 12}},
};
constexpr zLayout pageLayout{
    .id = 2, .name = "first", .caption = "First", .width = 150, .height = 116, .rows = pageRows};
constexpr zControlRow rows[] = {
    {.id = 10, .kind = zKind::notebook, .place = {4, 4, 160, 140}},
    {.id = 11, .kind = zKind::bitmapButton, .place = {4, 150, 50, 18}, .text = "OK", .style = zDefaultButton},
    {.id = 12, .kind = zKind::bitmapButton, .place = {60, 150, 50, 18}, .text = "No", .style = zCancelButton},
};
constexpr zLayout layout{
    .id = 1, .name = "dialog", .caption = "Dialog", .width = 170, .height = 172, .rows = rows};

// Numbers as in a transfer buffer, and one as in the settings.
struct Page {
    std::string address = "1234", name = "x";
    std::int16_t number = 1500, item = 1, check = 1;
    int choice = 26;

    bool operator==(const Page&) const = default;
};
constexpr zBindingRow<Page> bindings[] = {{21, &Page::address}, {22, &Page::number}, {23, &Page::item},
                                          {24, &Page::check},   {25, &Page::choice}, {28, &Page::name}};

class ControlsTest : public DeskTest {
  protected:
    zBoard& page = window.control<zNotebook>(10).addPage(pageLayout);
    Page variables;
    std::string log;

    ControlsTest() : DeskTest(layout) {}

    void SetUp() override {
        window.control<zNotebook>(10).addPage(pageLayout);
        page.bind(variables, bindings);
        page.load();
        window.control<zBitmapButton>(11).onClick = [this] { log += "ok "; };
        window.control<zBitmapButton>(12).onClick = [this] { log += "cancel "; };
        DeskTest::SetUp();
    }

    template <typename Kind> Kind& control(int id) { return page.control<Kind>(id); }
    void keys(std::initializer_list<const char*> names) {
        for (const char* name : names) user.key(name);
        user.settle();
    }
};

// What the user did not change stays, whether the control can show it or not.
TEST_F(ControlsTest, ValuesThatNoControlCanShowSurvive) {
    const struct {
        Page value;
        const char* number;
        int item, checked;
    } cases[] = {
        {{}, "1500", 1, 1},
        {{"", "", 0, 0, 0, 25}, "0", 0, 0},
        {{"xyz!", "a\tb\xe9", -1, 7, 5, 99}, "65535", -1, 1},
        {{"12345678", "y", -32768, -1, -1, 0}, "32768", -1, 1},
    };
    for (const auto& [value, number, item, checked] : cases) {
        variables = value;
        page.load();
        user.settle();
        EXPECT_EQ(control<zNumberEdit>(22).text(), number);
        EXPECT_EQ(control<zDropDown>(23).selected(), item);
        EXPECT_EQ(control<zCheckBox>(24).checked(), checked);
        page.store();
        EXPECT_EQ(variables, value);
    }
    control<zNumberEdit>(22).setNumber(70000);
    page.store();
    EXPECT_EQ(variables.number, 70000 - 65536) << "as many of the low bits as there is room for";
    EXPECT_THROW(control<zCheckBox>(24).bind(&variables.name), std::bad_variant_access);
}

TEST_F(ControlsTest, AddressesAreCompletedOnLeavingAndEmptyFieldsKeepTheOldValue) {
    user.click(control<zEdit>(21).widget());
    keys({"End", "BackSpace", "Tab"});
    EXPECT_EQ(control<zEdit>(21).text(), "12:30");
    for (const int id : {21, 22}) {
        user.click(control<zEdit>(id).widget());
        user.key("slash", "Control_L");  // select all
        user.key("Delete");
        EXPECT_EQ(control<zEdit>(id).text(), "");
    }
    page.store();
    EXPECT_EQ(variables, Page());
}

TEST_F(ControlsTest, ReturnAndEscapeAreTheWindowsButtonsFromEveryControl) {
    std::vector<zControl*> controls{&window.control<zControl>(10)};
    for (const int id : {20, 21, 22, 23, 24, 25, 26, 28}) controls.push_back(&control<zControl>(id));
    user.click(control<zEdit>(28).widget());  // somewhere to begin
    for (const zControl* from : controls) {
        XmProcessTraversal(from->widget(), XmTRAVERSE_CURRENT);
        log.clear();
        keys({"Return", "Escape"});
        EXPECT_EQ(log, "ok cancel ") << XtName(from->widget());
    }
    EXPECT_EQ(control<zEdit>(28).text(), "x");
}

TEST_F(ControlsTest, WhatTheUserSelectsIsToldOnceAndWhatTheProgramSelectsIsNot) {
    auto& list = control<zDropDown>(23);
    auto& radio = page.group(25);
    auto& strip = control<zTabStrip>(20);
    auto& book = window.control<zNotebook>(10);
    list.onSelect = [&] { log += fmt::format("list {} ", list.selected()); };
    radio.onClick = [&](int id) { log += fmt::format("radio {} ", id); };
    strip.onSelect = [&](int tab) { log += fmt::format("tab {} ", tab); };
    book.onSelect = [&](int position) { log += fmt::format("page {} ", position); };

    user.click(list.widget());
    XmProcessTraversal(list.widget(), XmTRAVERSE_CURRENT);
    keys({"Down"});
    for (const int id : {25, 25}) user.click(control<zRadioButton>(id).widget());
    XmProcessTraversal(strip.widget(), XmTRAVERSE_CURRENT);
    keys({"Right", "Right"});
    user.clickAt(strip.widget(), 10, 10);
    XmProcessTraversal(book.widget(), XmTRAVERSE_CURRENT);
    keys({"Right"});
    const std::string told = "list 2 radio 25 radio 25 tab 1 tab 2 tab 0 page 1 ";
    EXPECT_EQ(log, told);
    page.store();
    EXPECT_EQ(variables, (Page{.item = 2, .choice = 25}));

    list.select(0);
    radio.choose(26);
    strip.select(2);
    book.select(0);
    user.settle();
    EXPECT_EQ(log, told);
    EXPECT_EQ(strip.selected(), 2);
    EXPECT_EQ(book.selected(), 0);
}

// A choice is what the list is closed on, or what stands when the control is left.
TEST_F(ControlsTest, ADropDownListEndsAtItsEndsAndTellsOnlyWhatIsChosen) {
    auto& list = control<zDropDown>(23);
    list.onSelect = [&] { log += fmt::format("list {} ", list.selected()); };
    const struct {
        int before;
        std::vector<const char*> keys;  // "^" with Control
        int after;
        const char* log;
    } cases[] = {
        {1, {"Down", "Down", "Down"}, 2, ""},
        {1, {"Up", "Up", "Up"}, 0, ""},
        {1, {"Down", "Tab"}, 2, "list 2 "},
        {1, {"Down", "Up", "Tab"}, 1, ""},
        {1, {"Down", "Return"}, 2, "list 2 ok "},
        {0, {"^Down", "Down", "Down", "Down", "Return"}, 2, "list 2 "},
        {2, {"^Down", "Up", "Up", "Up", "^Up"}, 0, "list 0 "},
        {1, {"^Down", "Return"}, 1, ""},
        {1, {"^Down", "KP_Enter", "^Down", "Down", "KP_Enter"}, 2, "list 2 "},
        {0, {"^Down", "Down", "Escape"}, 0, ""},
        {0, {"^Down", "Down", "Escape", "Return"}, 0, "ok "},
        {-1, {"Down", "Tab"}, 0, "list 0 "},
    };
    for (const auto& [before, names, after, told] : cases) {
        list.select(before);
        XmProcessTraversal(list.widget(), XmTRAVERSE_CURRENT);
        user.settle();
        log.clear();
        for (const std::string name : names)
            if (name[0] == '^')
                user.key(name.c_str() + 1, "Control_L");
            else
                user.key(name.c_str());
        const std::string what = fmt::format("{} {}", before, fmt::join(names, " "));
        EXPECT_EQ(list.selected(), after) << what;
        EXPECT_EQ(log, told) << what;
    }
    log.clear();
    const Widget opened = XtNameToWidget(list.widget(), "*List");
    user.clickAt(list.widget(), placeOf(list.widget()).width - 8, 8);
    user.clickAt(opened, 10, placeOf(opened).height - 6);
    EXPECT_EQ(log, "list 2 ") << "by the mouse";

    list.select(0);
    XmProcessTraversal(list.widget(), XmTRAVERSE_CURRENT);
    user.key("Down");
    page.store();
    EXPECT_EQ(log.substr(log.size() - 7), "list 1 ") << "nobody left the list";
}

TEST_F(ControlsTest, ALampCannotBePressed) {
    auto& lamp = control<zLamp>(27);
    lamp.check(true);
    user.click(lamp.widget());
    EXPECT_TRUE(lamp.checked());
    Display* display = XtDisplay(lamp.widget());
    const unsigned long before = NextRequest(display);
    lamp.check(true);
    EXPECT_EQ(NextRequest(display), before) << "nothing to draw";
}

TEST_F(ControlsTest, ATimerTicksUntilItIsDestroyedEvenByItself) {
    int ticks = 0;
    std::unique_ptr<zTimer> timer = std::make_unique<zTimer>(application, 10, [&] {
        if (++ticks == 3) timer.reset();
    });
    EXPECT_TRUE(user.until([&] { return !timer; }));
    user.until([] { return false; }, 0.1);
    EXPECT_EQ(ticks, 3);
}

TEST_F(ControlsTest, WindowsComeBeforeTimersOfWhichOneIsAlwaysDue) {
    bool done = false, heard = false;
    int ticks = 0;
    const auto slow = [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (++ticks == 100) done = true;
    };
    const zTimer one(application, 5, slow), two(application, 5, slow);
    window.onClose = [&] { heard = done = true; };
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    user.askToClose(window.shell());
    application.runUntil(done);
    EXPECT_TRUE(heard);
}

TEST_F(ControlsTest, SignalsComeBeforeTimersOfWhichOneIsAlwaysDue) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [this] {
        int ticks = 0;
        const auto slow = [&] {
            if (++ticks == 10) std::raise(SIGTERM);
            if (ticks == 100) application.quit();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        };
        const zTimer one(application, 5, slow), two(application, 5, slow);
        return application.run();
    };
    EXPECT_EXIT(std::exit(run()), testing::ExitedWithCode(128 + SIGTERM), "stopped by signal 15");
}

}  // namespace
