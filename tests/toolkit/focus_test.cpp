#include "tests/toolkit/desk.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/table/table.h"
#include "toolkit/window/messagebox.h"

namespace {

constexpr const char* two[] = {"one", "two"};

using enum zKind;

constexpr zControlRow pageRows[] = {
    {.id = 20, .kind = tabStrip, .place = {0, 0, 150, 20}, .items = two},
    {.id = 21, .kind = edit, .place = {8, 30, 80, 12}},
    {.id = 22, .kind = dropDown, .place = {8, 44, 60, 40}, .items = two},
    {.id = 23, .kind = table, .place = {8, 60, 100, 40}},
    {.id = 24, .kind = bitmapButton, .place = {110, 60, 36, 14}, .text = "Add"},
};
constexpr zLayout pageLayout{
    .id = 2, .name = "page", .caption = "Page", .width = 150, .height = 110, .rows = pageRows};
constexpr zControlRow rows[] = {
    {.id = 10, .kind = notebook, .place = {4, 4, 160, 140}},
    {.id = 11, .kind = listBox, .place = {170, 4, 80, 40}},
    {.id = 12, .kind = edit, .place = {170, 50, 60, 12}, .style = zReadOnly},
    {.id = 13, .kind = checkBox, .place = {170, 66, 60, 12}, .text = "Check"},
    {.id = 14, .kind = radioButton, .place = {170, 80, 40, 10}, .text = "A", .style = zFirstOfGroup},
    {.id = 15, .kind = bitmapButton, .place = {4, 150, 50, 18}, .text = "More"},
    {.id = 16, .kind = bitmapButton, .place = {60, 150, 50, 18}, .text = "OK", .style = zDefaultButton},
    {.id = 17, .kind = bitmapButton, .place = {120, 150, 50, 18}, .text = "No", .style = zCancelButton},
};
constexpr zLayout layout{
    .id = 1, .name = "dialog", .caption = "Dialog", .width = 254, .height = 172, .rows = rows};

class FocusTest : public DeskTest {
  protected:
    zBoard& page = window.control<zNotebook>(10).addPage(pageLayout);
    std::string log;

    FocusTest() : DeskTest(layout) {}

    zControl& control(int id) { return id < 20 ? window.control<zControl>(id) : page.control<zControl>(id); }
    // The id of the control with the focus.
    static std::string focused(const zFormDialog& dialog) {
        Widget with = XmGetFocusWidget(dialog.shell());
        while (with && !std::string_view(XtName(with)).starts_with("id")) with = XtParent(with);
        return with ? XtName(with) : "none";
    }
    std::string tabs(const zFormDialog& dialog, int times) {
        std::string ids = focused(dialog);
        for (int i = 0; i < times; ++i) {
            user.key("Tab");
            ids += ' ' + focused(dialog);
        }
        return ids;
    }
    void giveTo(int id) {
        XmProcessTraversal(control(id).widget(), XmTRAVERSE_CURRENT);
        user.settle();
    }
};

TEST_F(FocusTest, IsSeenOnEveryControl) {
    window.control<zListBox>(11).setLines({"one", "two"});
    for (const int id : {10, 11, 12, 13, 14, 15, 16, 17, 20, 21, 22, 23, 24}) {
        giveTo(id == 12 ? 13 : 12);
        const auto without = user.colours(control(id).outermost());
        giveTo(id);
        const auto with = user.colours(control(id).outermost());
        EXPECT_NE(with, without) << id;
    }
}

TEST_F(FocusTest, GoesThroughTheRowsFromTheFirstOn) {
    EXPECT_EQ(tabs(window, 13), "id10 id20 id21 id22 id23 id24 id11 id12 id13 id14 id15 id16 id17 id10");
}

TEST_F(FocusTest, GoesThroughThePageOnTopHoweverLateItWasMade) {
    constexpr const char* first = "id10 id20 id21 id22 id23 id24 id11";
    constexpr const char* second = "id10 id30 id11";
    static constexpr zControlRow late[] = {{.id = 30, .kind = edit, .place = {8, 30, 80, 12}}};
    static constexpr zLayout lateLayout{
        .id = 3, .name = "late", .caption = "Late", .width = 150, .height = 110, .rows = late};
    zFormDialog dialog(window, layout);
    auto& book = dialog.control<zNotebook>(10);
    book.addPage(pageLayout, [](zBoard&) {});
    book.addPage(lateLayout, [](zBoard&) {});
    std::string seen;
    user.when(shown("Dialog"), [&] {
        user.focus(dialog.shell());
        seen = tabs(dialog, 6);
        for (const bool later : {true, false}) {
            XmProcessTraversal(book.widget(), XmTRAVERSE_CURRENT);
            user.key(later ? "Right" : "Left");
            user.settle();
            seen += "; " + tabs(dialog, later ? 2 : 6);
        }
        dialog.endModal();
    });
    dialog.runModal();
    EXPECT_EQ(seen, fmt::format("{}; {}; {}", first, second, first));
}

TEST_F(FocusTest, ReturnPressesTheButtonThatHasIt) {
    const auto press = [&](int id) -> zBitmapButton& {
        auto& button = dynamic_cast<zBitmapButton&>(control(id));
        button.onClick = [this, id] { log += fmt::format("{} ", id); };
        return button;
    };
    for (const int id : {15, 16, 17, 24}) press(id);
    press(15).onShiftClick = [this] { log += "shifted "; };
    for (const int id : {15, 24, 17, 16}) {
        giveTo(id);
        for (const char* key : {"Return", "KP_Enter", "space"}) user.key(key);
    }
    EXPECT_EQ(log, "15 15 15 24 24 24 17 17 17 16 16 16 ");
    log.clear();
    giveTo(15);
    user.key("space", "Shift_L");
    giveTo(16);
    user.key("space", "Shift_L");
    EXPECT_EQ(log, "shifted 16 ");
}

TEST_F(FocusTest, KeysOfAQuestion) {
    const struct {
        std::vector<const char*> keys;
        bool agrees;
    } cases[] = {
        {{"Return"}, true},
        {{"space"}, true},
        {{"Escape"}, false},
        {{"Right", "Return"}, false},
        {{"Left", "space"}, false},
        {{"Right", "Right", "Return"}, true},
        {{"Tab", "Return"}, false},
        {{"Tab", "space"}, false},
        {{"Tab", "Tab", "Return"}, true},
        {{"Tab", "Left", "KP_Enter"}, true},
        {{"Tab", "Tab", "Escape"}, false},
        {{"back", "Return"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{}", fmt::join(c.keys, " ")));
        user.when(shown("Sure"), [&] {
            user.focus(user.shellLike("Sure"));
            for (const std::string_view key : c.keys)
                key == "back" ? user.key("Tab", "Shift_L") : user.key(key.data());
        });
        EXPECT_EQ(zQuestionBox(application, window.shell(), "Really?", "Sure"), c.agrees);
    }
}

// Where its field is grey, a caret is drawn, and its text begins.
class FieldLookTest : public FocusTest {
  protected:
    static Pixel background(Widget widget) { return resourceOf<Pixel>(widget, XmNbackground); }
    static bool caret(Widget field) { return resourceOf<Boolean>(field, XmNcursorPositionVisible); }
    // The first column of the picture, behind the shadow, with something dark in it.
    int textBegin(Widget target) const {
        const WindowImage picture(target);
        int column = 4;
        const auto dark = [&] {
            for (int y = 4; y < picture.height - 4; ++y)
                if ((picture.at(column, y) & 0xff) < 0x40) return true;
            return false;
        };
        while (column < picture.width && !dark()) ++column;
        return column;
    }
};

TEST_F(FieldLookTest, IsThatOfItsState) {
    const Widget field = control(21).widget(), list = XtNameToWidget(control(22).widget(), "*Text");
    for (const Widget each : {field, list}) {
        const int id = each == field ? 21 : 22;
        const Pixel usual = background(each);
        control(id).enable(false);
        EXPECT_EQ(background(each), background(XtParent(each)));
        control(id).enable(true);
        EXPECT_EQ(background(each), usual);
    }
    giveTo(11);
    EXPECT_FALSE(caret(field) || caret(list));
    giveTo(21);
    EXPECT_TRUE(caret(field));
    giveTo(12);
    EXPECT_FALSE(caret(field) || caret(control(12).widget()));
    window.control<zEdit>(12).setText("one");
    page.control<zEdit>(21).setText("one");
    page.control<zDropDown>(22).select(0);
    user.settle();
    const int begin = textBegin(control(21).widget());
    EXPECT_EQ(textBegin(control(12).widget()), begin);
    EXPECT_EQ(textBegin(control(22).widget()), begin);
}

}  // namespace
