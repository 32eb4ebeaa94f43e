#include <gtest/gtest.h>  // before the window system's macros

#include "tests/toolkit/desk.h"
#include "toolkit/controls/board.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/choice.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/lamp.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/controls/tabstrip.h"
#include "toolkit/window/messagebox.h"
#include "toolkit/window/timer.h"

#include <Xm/Xm.h>
#include <chrono>
#include <thread>

namespace {

constexpr const char* three[] = {"one", "two", "three"};

constexpr zControlRow pageRows[] = {
    {.id = 20, .kind = zKind::tabStrip, .place = {0, 0, 150, 20}, .items = three},
    {.kind = zKind::groupBox, .place = {4, 22, 140, 90}, .text = "Group", .name = "group"},
    {.id = 21, .kind = zKind::edit, .place = {8, 30, 80, 12}, .mask = "[0-9a-f][0-9a-f]':'[0-9a-f][0-9a-f]"},
    {.id = 22, .kind = zKind::numberEdit, .place = {8, 44, 40, 12}, .mask = "####"},
    {.id = 23, .kind = zKind::dropDown, .place = {8, 58, 60, 40}, .items = three},
    {.id = 24, .kind = zKind::checkBox, .place = {8, 74, 60, 12}, .text = "Check"},
    {.id = 25, .kind = zKind::radioButton, .place = {8, 88, 40, 10}, .text = "A", .style = zFirstOfGroup},
    {.id = 26, .kind = zKind::radioButton, .place = {50, 88, 40, 10}, .text = "B"},
    {.id = 27, .kind = zKind::lamp, .place = {100, 88, 30, 18}, .text = "Up"},
    {.id = 28, .kind = zKind::edit, .place = {8, 98, 60, 12}},
};
constexpr zLayout pageLayout{
    .id = 2, .name = "first", .caption = "First", .width = 150, .height = 116, .rows = pageRows};
constexpr zControlRow otherRows[] = {{.id = 40, .kind = zKind::edit, .place = {8, 8, 60, 12}}};
constexpr zLayout otherLayout{
    .id = 3, .name = "other", .caption = "Other", .width = 150, .height = 116, .rows = otherRows};
constexpr zControlRow rows[] = {
    {.id = 10, .kind = zKind::notebook, .place = {4, 4, 160, 140}},
    {.id = 11, .kind = zKind::bitmapButton, .place = {4, 150, 50, 18}, .text = "OK", .style = zDefaultButton},
    {.id = 12,
     .kind = zKind::bitmapButton,
     .place = {60, 150, 50, 18},
     .text = "Cancel",
     .style = zCancelButton},
};
constexpr zLayout layout{
    .id = 1, .name = "dialog", .caption = "Dialog", .width = 170, .height = 172, .rows = rows};

struct Page {
    std::string address = "1234", name = "x";
    unsigned number = 1500;
    int item = 1, check = 1, choice = 26;

    bool operator==(const Page&) const = default;
};
// Numbers as in a transfer buffer.
struct Buffer {
    std::int16_t number = 1500, item = 1, check = 1, choice = 26;

    bool operator==(const Buffer&) const = default;
};
constexpr zBindingRow<Buffer> bufferBindings[] = {
    {22, &Buffer::number}, {23, &Buffer::item}, {24, &Buffer::check}, {25, &Buffer::choice}};

constexpr zBindingRow<Page> bindings[] = {{21, &Page::address}, {22, &Page::number}, {23, &Page::item},
                                          {24, &Page::check},   {25, &Page::choice}, {28, &Page::name}};

class ControlsTest : public testing::Test {
  protected:
    zApplication& application = desk().application;
    zFormDialog window{application, layout};
    zBoard& page = window.control<zNotebook>(10).addPage(pageLayout);
    zBoard& other = window.control<zNotebook>(10).addPage(otherLayout);
    XUser user{application};
    Page variables;
    std::string log;

    void SetUp() override {
        ASSERT_TRUE(desk().open);
        page.bind(variables, bindings);
        page.load();
        window.control<zBitmapButton>(11).onClick = [this] { log += "ok "; };
        window.control<zBitmapButton>(12).onClick = [this] { log += "cancel "; };
        window.show();
        ASSERT_TRUE(user.until([&] { return user.shellTitled("Dialog") != nullptr; }));
        user.focus(window.shell());
    }

    template <typename Kind> Kind& control(int id) { return page.control<Kind>(id); }
    void keys(std::initializer_list<const char*> names) {
        for (const char* name : names) user.key(name);
        user.settle();
    }
};

// What the user did not change stays, whether the control can show it or not.
TEST_F(ControlsTest, ValuesThatNoControlCanShowSurvive) {
    const Page values[] = {
        {},
        {.address = "", .name = "", .number = 0, .item = 0, .check = 0, .choice = 25},
        {.address = "xyz!", .name = "a\tb\xe9", .number = 65535, .item = 7, .check = 5, .choice = 99},
        {.address = "12345678", .name = "y", .number = 12345, .item = -1, .check = -1, .choice = 0}};
    for (const Page& value : values) {
        variables = value;
        page.load();
        user.settle();
        page.store();
        EXPECT_EQ(variables, value);
    }
}

TEST_F(ControlsTest, WhatTheUserChangesIsStoredAndNothingElse) {
    variables.number = 12345;
    page.load();
    user.click(control<zEdit>(21).widget());
    keys({"Home", "Delete", "a", "g"});
    user.click(control<zCheckBox>(24).widget());
    user.click(control<zRadioButton>(25).widget());
    page.store();
    EXPECT_EQ(variables, (Page{.address = "a234", .number = 12345, .check = 0, .choice = 25}));
}

TEST_F(ControlsTest, SixteenBitsAreShownAndStored) {
    const struct {
        Buffer before;
        const char* number;
        int item, checked;
    } cases[] = {
        {{0, 0, 0, 25}, "0", 0, 0}, {{-1, -1, -1, 0}, "65535", -1, 1}, {{-32768, 7, 5, 99}, "32768", -1, 1}};
    for (const auto& [before, number, item, checked] : cases) {
        Buffer buffer = before;
        page.bind(buffer, bufferBindings);
        page.load();
        user.settle();
        EXPECT_EQ(control<zNumberEdit>(22).text(), number);
        EXPECT_EQ(control<zDropDown>(23).selected(), item);
        EXPECT_EQ(control<zCheckBox>(24).checked(), checked);
        page.store();
        EXPECT_EQ(buffer, before) << number;

        control<zNumberEdit>(22).setNumber(70000);
        control<zDropDown>(23).select(2);
        control<zCheckBox>(24).check(!checked);
        page.group(25).choose(26);
        page.store();
        EXPECT_EQ(buffer, (Buffer{70000 - 65536, 2, static_cast<std::int16_t>(!checked), 26})) << number;
    }
    EXPECT_THROW(control<zCheckBox>(24).bind(&variables.name), std::bad_variant_access);
}

TEST_F(ControlsTest, ControlsCanBeBoundToAnotherObject) {
    Buffer first{10, 0, 0, 25}, second{20, 1, 1, 26};
    page.bind(first, bufferBindings);
    page.load();
    control<zNumberEdit>(22).setNumber(11);
    page.store();
    page.bind(second, bufferBindings);
    EXPECT_EQ(control<zNumberEdit>(22).number(), 11U) << "before load()";
    page.load();
    EXPECT_EQ(control<zNumberEdit>(22).number(), 20U);
    control<zCheckBox>(24).check(false);
    page.store();
    EXPECT_EQ(first, (Buffer{11, 0, 0, 25}));
    EXPECT_EQ(second, (Buffer{20, 1, 0, 26}));
}

TEST_F(ControlsTest, RadioButtonsReportEveryClickAndStayChosen) {
    page.group(25).onClick = [&](int id) { log += std::to_string(id) + ' '; };
    page.group(25).choose(25);
    EXPECT_EQ(log, "") << "by program";
    for (const int id : {26, 26, 25}) user.click(control<zRadioButton>(id).widget());
    EXPECT_EQ(log, "26 26 25 ");
    page.store();
    EXPECT_EQ(variables.choice, 25);
}

TEST_F(ControlsTest, AddressesAreCompletedOnLeavingAndEmptyFieldsKeepTheOldValue) {
    auto& field = control<zEdit>(21);
    user.click(field.widget());
    keys({"End", "BackSpace", "Tab"});
    EXPECT_EQ(field.text(), "12:30");
    for (const int id : {21, 22}) {
        user.click(control<zEdit>(id).widget());
        keys({"End", "BackSpace", "BackSpace", "BackSpace", "BackSpace", "BackSpace", "BackSpace"});
        EXPECT_EQ(control<zEdit>(id).text(), "");
    }
    page.store();
    EXPECT_EQ(variables.number, 1500U);
    EXPECT_EQ(variables.address, "1234");
}

TEST_F(ControlsTest, ReturnAndEscapeAreTheWindowsButtonsFromEveryControl) {
    const int controls[] = {20, 21, 22, 23, 24, 25, 26, 28};
    user.click(control<zEdit>(28).widget());  // somewhere to begin
    for (std::size_t i = 0; i < std::size(controls); ++i) {
        XmProcessTraversal(page.control<zControl>(controls[i]).widget(), XmTRAVERSE_CURRENT);
        log.clear();
        keys({"Return", "Escape"});
        EXPECT_EQ(log, "ok cancel ") << controls[i];
    }
    XmProcessTraversal(window.control<zControl>(10).widget(), XmTRAVERSE_CURRENT);
    log.clear();
    keys({"Return", "Escape"});
    EXPECT_EQ(log, "ok cancel ") << "on the tabs";
    EXPECT_EQ(control<zEdit>(28).text(), "x");
}

TEST_F(ControlsTest, ADropDownTellsEachChoiceOnce) {
    auto& list = control<zDropDown>(23);
    list.onSelect = [&] { log += std::to_string(list.selected()) + ' '; };
    list.select(0);
    EXPECT_EQ(log, "") << "by program";
    user.click(list.widget());
    XmProcessTraversal(list.widget(), XmTRAVERSE_CURRENT);
    keys({"Down"});
    EXPECT_EQ(log, "1 ");
    page.store();
    EXPECT_EQ(variables.item, 1);
}

TEST_F(ControlsTest, TabsTellWhatTheUserSelects) {
    auto& strip = control<zTabStrip>(20);
    auto& book = window.control<zNotebook>(10);
    strip.onSelect = [&](int tab) { log += std::to_string(tab) + ' '; };
    book.onSelect = [&](int position) { log += 'p' + std::to_string(position) + ' '; };
    XmProcessTraversal(strip.widget(), XmTRAVERSE_CURRENT);
    keys({"Right", "Right"});
    user.clickAt(strip.widget(), 10, 10);
    EXPECT_EQ(log, "1 2 0 ");
    XmProcessTraversal(book.widget(), XmTRAVERSE_CURRENT);
    keys({"Right"});
    EXPECT_EQ(log, "1 2 0 p1 ");
    EXPECT_EQ(book.selected(), 1);
    strip.select(2);
    book.select(0);
    user.settle();
    EXPECT_EQ(log, "1 2 0 p1 ") << "by program";
    EXPECT_EQ(strip.selected(), 2);
    EXPECT_EQ(book.selected(), 0);
}

TEST_F(ControlsTest, ALampCannotBePressed) {
    auto& lamp = control<zLamp>(27);
    lamp.check(true);
    user.click(lamp.widget());
    EXPECT_TRUE(lamp.checked());
    Display* display = XtDisplay(lamp.widget());
    const unsigned long before = NextRequest(display);
    lamp.check(true);
    EXPECT_EQ(NextRequest(display), before);
}

TEST_F(ControlsTest, ATimerTicksUntilItIsDestroyedEvenByItself) {
    int ticks = 0;
    std::unique_ptr<zTimer> timer;
    timer = std::make_unique<zTimer>(application, 10, [&] {
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

}  // namespace
