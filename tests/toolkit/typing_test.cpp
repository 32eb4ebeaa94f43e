#include "tests/toolkit/desk.h"
#include "tests/toolkit/otherclient.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/fieldmask.h"

#include <X11/keysym.h>
#include <Xm/TextF.h>
#include <malloc.h>

namespace {

zPasted pastedAddress(std::string_view text) {
    if (text == "ab.cd/12.34") return {.text = "ab:cd", .partner = "12:34"};
    return text == "ab.cd" ? zPasted{.text = "ab:cd"} : zPasted{.refusal = "This is no address."};
}

constexpr zFieldMask address{.picture = "[0-9a-f][0-9a-f]':'[0-9a-f][0-9a-f]",
                             .takes = "an address has digits.",
                             .full = "An address has 4 digits.",
                             .paste = pastedAddress};
constexpr zFieldMask fourDigits{
    .picture = "####", .takes = "a number has digits.", .full = "A number has at most 4 digits."};
constexpr zFieldMask name{.picture = "[!-z](31)", .takes = "a name has letters.", .full = "31 letters."};

enum Id { addressED = 31, numberED, nameED, shownED };
constexpr zControlRow rows[] = {
    {.id = addressED, .kind = zKind::edit, .place = {8, 4, 80, 12}, .mask = &address},
    {.id = numberED, .kind = zKind::numberEdit, .place = {8, 20, 80, 12}, .mask = &fourDigits},
    {.id = nameED, .kind = zKind::edit, .place = {8, 36, 50, 12}, .mask = &name},
    {.id = shownED, .kind = zKind::edit, .place = {8, 52, 80, 12}, .style = zReadOnly},
};
constexpr zLayout layout{
    .id = 3, .name = "typing", .caption = "Typing", .width = 100, .height = 80, .rows = rows};

class TypingTest : public DeskTest {
  protected:
    std::string refused;
    int edits = 0;

    TypingTest() : DeskTest(layout) {}

    void SetUp() override {
        DeskTest::SetUp();
        for (const int id : {addressED, numberED, nameED, shownED}) {
            field(id).onRefused = [this](const std::string& reason) { refused = reason; };
            field(id).onEdited = [this] { ++edits; };
        }
        field(shownED).setText("shown");
        // Keys that the keyboard has not.
        KeySym foreign[] = {XK_Greek_alpha, XK_Greek_ALPHA, XK_udiaeresis, XK_Udiaeresis};
        XChangeKeyboardMapping(XtDisplay(window.shell()), 250, 2, foreign, 2);
        user.settle();
    }

    zEdit& field(int id) { return window.control<zEdit>(id); }
    void enter(int id) {  // from elsewhere
        XmProcessTraversal(field(id == shownED ? nameED : shownED).widget(), XmTRAVERSE_CURRENT);
        XmProcessTraversal(field(id).widget(), XmTRAVERSE_CURRENT);
        user.settle();
    }
    // Words: a key, with "^" Control and "+" Shift held.
    void keys(const std::string& words) {
        std::istringstream in(words);
        for (std::string word; in >> word;) {
            const char* held = word[0] == '^' ? "Control_L" : word[0] == '+' ? "Shift_L" : nullptr;
            user.key(word.c_str() + (held ? 1 : 0), held);
        }
        user.until([] { return false; }, 0.05);  // another client's answer
    }
    int blackIn(int id) { return user.colours(field(id).widget())[0]; }
};

struct Row {
    int id;
    const char *before, *keys, *after, *reason;
};

// Other clients have "200" as selection and "300" in the clipboard.
TEST_F(TypingTest, KeysReplaceWhatIsMarkedOnEntering) {
    const Row cases[] = {
        {numberED, "0", "2 0 0", "200", ""},
        {numberED, "1500", "BackSpace", "", ""},
        {numberED, "1500", "Delete 7", "7", ""},
        {numberED, "15", "End 2", "152", ""},
        {numberED, "15", "Left 2", "125", ""},
        {numberED, "15", "Left Delete ^a 7", "7", ""},
        {numberED, "15", "^v", "300", ""},
        {numberED, "15", "+Insert", "300", ""},
        {numberED, "15", "End ^v", "15", "A number has at most 4 digits."},
        {numberED, "15", "x", "15", "\"x\" cannot stand here: a number has digits."},
        {numberED, "15", "x 1 2 3 4 5", "1234", "A number has at most 4 digits."},
        {nameED, "abc", "space", "abc", "A blank cannot stand here: a name has letters."},
        {nameED, "abc", "Greek_alpha", "abc", "This character cannot stand here: a name has letters."},
        {nameED, "abc", "udiaeresis", "abc", "This character cannot stand here: a name has letters."},
        {nameED, "abc", "^g ^b x", "x", ""},
        {addressED, "12:34", "a b", "ab:", ""},
        {addressED, "12:34", "a +colon b", "0a:b", ""},
        {addressED, "12:34", "g", "12:34", "\"g\" cannot stand here: an address has digits."},
        {addressED, "12:34", "End 5", "12:34", "An address has 4 digits."},
        {addressED, "12:34", "Left ^v", "12:34", "This is no address."},
        {shownED, "shown", "x BackSpace ^x", "shown", ""},
        {shownED, "shown", "^v", "shown", "This field is for reading only."},
    };
    const OtherClient other("200", "300");
    for (const auto& [id, before, typed, after, reason] : cases) {
        field(id).setText(before);
        enter(id);
        refused.clear();
        const int bells = other.bells;
        keys(typed);
        const std::string what = std::string(before) + " " + typed;
        EXPECT_EQ(field(id).text(), after) << what;
        EXPECT_EQ(refused, reason) << what;
        EXPECT_TRUE(user.until([&] { return (other.bells > bells) == !refused.empty(); }, 2)) << what;
        EXPECT_EQ(XGetSelectionOwner(XtDisplay(window.shell()), XA_PRIMARY), other.window()) << what;
    }
}

TEST_F(TypingTest, TheClipboardTakesWhatIsMarkedAndOutlivesItsWindow) {
    {
        zFormDialog passing(application, layout);
        passing.show();
        passing.control<zEdit>(shownED).setText("1234");
        user.settle();
        user.focus(passing.shell());
        XmProcessTraversal(passing.control<zEdit>(shownED).widget(), XmTRAVERSE_CURRENT);
        keys("^c");
    }
    user.focus(window.shell());
    enter(numberED);
    keys("^v Left ^a ^x");
    EXPECT_EQ(field(numberED).text(), "");
    enter(nameED);
    keys("^v");
    EXPECT_EQ(field(nameED).text(), "1234");
}

TEST_F(TypingTest, AClickPutsTheCaretAndTheMiddleButtonInsertsTheSelection) {
    const OtherClient other("20", "ab.cd");
    field(numberED).setText("15");
    user.clickAt(field(numberED).widget(), 60, 8);
    keys("3");
    EXPECT_EQ(field(numberED).text(), "153");
    user.clickMiddle(field(numberED).widget());
    keys("");
    EXPECT_EQ(field(numberED).text(), "153") << "five digits";
    EXPECT_EQ(refused, "A number has at most 4 digits.");
    field(numberED).setText("15");
    user.clickMiddle(field(numberED).widget());
    EXPECT_TRUE(user.until([&] { return field(numberED).text() == "2015"; })) << field(numberED).text();
}

TEST_F(TypingTest, APastedAddressTakesThePlaceOfEverythingAndFillsItsPartner) {
    const OtherClient other("ab.cd/12.34", "ab.cd");
    std::string partner;
    field(addressED).onPartner = [&](const std::string& text) { partner = text; };
    enter(addressED);
    keys("0 0 ^v");
    EXPECT_EQ(field(addressED).text() + partner, "ab:cd");
    field(addressED).setText("00:0");
    user.clickMiddle(field(addressED).widget());
    EXPECT_TRUE(user.until([&] { return partner == "12:34"; }));
    EXPECT_EQ(field(addressED).text(), "ab:cd");
}

TEST_F(TypingTest, WhatIsPastedAfterTheWindowHasGoneIsLost) {
    OtherClient other("", "300");
    {
        zFormDialog passing(application, layout);
        passing.show();
        user.settle();
        user.focus(passing.shell());
        XmProcessTraversal(passing.control<zEdit>(numberED).widget(), XmTRAVERSE_CURRENT);
        other.silent = true;
        user.key("v", "Control_L");
    }
    other.silent = false;
    user.until([] { return false; }, 0.2);
    user.focus(window.shell());
    enter(numberED);
    keys("^v");
    EXPECT_EQ(field(numberED).text(), "300");
}

TEST_F(TypingTest, WhatIsCompletedOnLeavingIsMarkedUntilTheNextKey) {
    field(addressED).setText("");
    enter(addressED);
    keys("1 2 3");
    user.key("Tab");
    EXPECT_EQ(field(addressED).text(), "12:30");
    const int marked = blackIn(addressED);
    user.key("Shift_L");
    EXPECT_EQ(blackIn(addressED), marked);
    user.key("7");
    EXPECT_LT(blackIn(addressED), marked);
    EXPECT_EQ(field(numberED).text(), "7");
    EXPECT_EQ(edits, 5) << "three digits, the zero, the 7";

    field(addressED).setText("");
    enter(addressED);
    keys("1 +colon 3");
    user.key("Tab");
    EXPECT_EQ(field(addressED).text(), "01:03");
    EXPECT_NEAR(blackIn(addressED), marked, 20) << "the zero alone: two digits would have twice as much";
}

TEST_F(TypingTest, AWindowThatLosesTheKeyboardLeavesItsFieldAsItIs) {
    zFormDialog second(application, layout);
    second.show();
    user.settle();
    enter(addressED);
    keys("1 2");
    user.focus(second.shell());
    EXPECT_EQ(field(addressED).text(), "12:");
    user.focus(window.shell());
    keys("3");
    EXPECT_EQ(field(addressED).text(), "12:3");
}

TEST_F(TypingTest, TheCaretStaysInSightInALongName) {
    const Widget widget = field(nameED).widget();
    const auto seen = [&] {
        Position x = 0, y = 0;
        return XmTextFieldPosToXY(widget, XmTextFieldGetInsertionPosition(widget), &x, &y) && x >= 0 &&
               x <= placeOf(widget).width;
    };
    enter(nameED);
    for (char c = 'a'; c <= 'z'; ++c) {
        user.key(std::string(1, c).c_str());
        ASSERT_TRUE(seen()) << field(nameED).text();
    }
    for (const char* key : {"Home", "Delete", "End", "BackSpace", "x"}) {
        user.key(key);
        EXPECT_TRUE(seen()) << key;
    }
    EXPECT_EQ(field(nameED).text(), "bcdefghijklmnopqrstuvwxyx");
}

// Whoever owns the selection answers late, or never.
TEST_F(TypingTest, AWindowThatClosesWaitsForNoSelection) {
    OtherClient other("200", "300");
    other.silent = true;
    const XtAppContext context = XtWidgetToApplicationContext(window.shell());
    const unsigned long usual = XtAppGetSelectionTimeout(context);
    XtAppSetSelectionTimeout(context, 1500);
    ::mallopt(M_PERTURB, 0x55);  // what is freed is seen to be
    for (int i = 0; i < 5; ++i) {
        zFormDialog second(application, layout);
        second.show();
        user.until([&] { return user.shellLike(XUser::titleOf(second.shell())); });
        user.focus(second.shell());
        user.clickMiddle(second.control<zEdit>(nameED).widget());
        XmProcessTraversal(second.control<zEdit>(shownED).widget(), XmTRAVERSE_CURRENT);
        user.key("Insert", "Shift_L");
    }
    // Meanwhile no field takes it: the next field that did would free what the request refers to.
    const Widget edit = field(nameED).widget();
    user.focus(window.shell());
    user.clickMiddle(edit);
    for (const int id : {nameED, numberED}) {
        field(id).setText("1234");
        user.drag(field(id).widget(), {2, 8}, {30, 8});
        EXPECT_EQ(XGetSelectionOwner(XtDisplay(edit), XA_PRIMARY), other.window()) << id;
    }
    user.until([] { return false; }, 1.8);
    ::mallopt(M_PERTURB, 0);
    XtAppSetSelectionTimeout(context, usual);
    const OtherClient answering("200", "");
    field(nameED).setText("");
    user.clickMiddle(edit);
    EXPECT_TRUE(user.until([&] { return field(nameED).text() == "200"; })) << field(nameED).text();
}

}  // namespace
