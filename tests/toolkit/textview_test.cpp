#include "tests/toolkit/desk.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/textview.h"

#include <Xm/CutPaste.h>
#include <Xm/Text.h>

namespace {

using enum zKind;

constexpr zControlRow rows[] = {
    {.id = 1, .kind = textView, .place = {4, 4, 180, 80}},
    {.id = 2, .kind = bitmapButton, .place = {4, 90, 50, 18}, .text = "OK", .style = zDefaultButton},
    {.id = 3, .kind = bitmapButton, .place = {60, 90, 50, 18}, .text = "Cancel", .style = zCancelButton},
};
constexpr zLayout layout{.name = "reader", .caption = "Reader", .width = 190, .height = 115, .rows = rows};
constexpr int lines = 60;

struct TextViewTest : DeskTest {
    Widget text = window.control<zTextView>(1).widget();
    std::string pressed;

    TextViewTest() : DeskTest(layout) {}

    void SetUp() override {
        std::string all;
        for (int line = 1; line <= lines; ++line) all += fmt::format("line {}\n", line);
        window.control<zTextView>(1).setText(all);
        window.control<zBitmapButton>(2).onClick = [this] { pressed += "ok "; };
        window.control<zBitmapButton>(3).onClick = [this] { pressed += "cancel "; };
        DeskTest::SetUp();
    }
    // The number of the topmost line.
    int top() const {
        std::array<char, 16> start{};
        XmTextGetSubstring(text, XmTextGetTopCharacter(text), 8, start.size(), start.data());
        return std::atoi(start.data() + 5);
    }
    int shown() const { return resourceOf<short>(text, XmNrows); }
};

}  // namespace

TEST_F(TextViewTest, KeysScrollFromEndToEndAndNoFurther) {
    const int page = shown() - 1, last = lines - shown() + 2;  // an empty line ends the text
    ASSERT_GT(page, 3);
    const struct {
        const char* key;
        int top;
    } presses[] = {{"Up", 1},        {"Down", 2},    {"Down", 3},   {"Next", 3 + page}, {"Prior", 3},
                   {"Home", 1},      {"Prior", 1},   {"End", last}, {"Next", last},     {"Down", last},
                   {"Up", last - 1}, {"Next", last}, {"Home", 1}};
    for (const auto& press : presses) {
        user.key(press.key);
        EXPECT_EQ(top(), press.top) << press.key;
    }
    const long length = XmTextGetLastPosition(text);
    user.type("x");
    EXPECT_EQ(XmTextGetLastPosition(text), length) << "it is to be read only";
}

TEST_F(TextViewTest, ReturnAndEscapePressButtonsAndControlCCopiesWhatIsMarked) {
    user.key("Return");
    user.key("Escape");
    EXPECT_EQ(pressed, "ok cancel ");
    XmTextSetSelection(text, 5, 13, CurrentTime);
    user.key("c", "Control_L");
    std::array<char, 32> copied{};
    unsigned long length = 0;
    static char format[] = "STRING";
    ASSERT_EQ(XmClipboardRetrieve(XtDisplay(text), XtWindow(text), format, copied.data(), copied.size(),
                                  &length, nullptr),
              XmClipboardSuccess);
    EXPECT_EQ(std::string(copied.data(), length), "1\nline 2");
}
