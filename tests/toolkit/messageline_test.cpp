#include "tests/toolkit/desk.h"
#include "toolkit/controls/fieldmask.h"
#include "toolkit/controls/messageline.h"

namespace {

constexpr zFieldMask digits{.picture = "#[#][#]", .takes = "digits only.", .full = "Three digits."};

constexpr zControlRow rows[] = {
    {.id = 10, .kind = zKind::edit, .place = {4, 4, 60, 12}, .mask = &digits},
    {.id = 11, .kind = zKind::edit, .place = {4, 20, 60, 12}, .mask = &digits},
    {.id = 12, .kind = zKind::checkBox, .place = {4, 36, 60, 12}, .text = "Check"},
    messageRow({4, 60, 80, 24}),
};
constexpr zLayout layout{
    .id = 1, .name = "dialog", .caption = "Dialog", .width = 90, .height = 90, .rows = rows};

class MessageLineTest : public DeskTest {
  protected:
    MessageLineTest() : DeskTest(layout) {
        line.advise = [](const zEdit* field) {
            const bool wrong = field && field->text() == "9";
            return zMessageLine::Advice{wrong ? "no 9" : "", "the page"};
        };
        line.refresh();
    }
    Widget widget(int id) { return window.control<zControl>(id).widget(); }

    zMessageLine line{window.board()};
};

}  // namespace

TEST_F(MessageLineTest, SaysTheMostUrgent) {
    static constexpr zEnableRow needs[] = {{12, 1}};
    static constexpr zNeedRow sentences[] = {{2, "something else"}, {1, "Switch it on"}};
    EXPECT_EQ(line.text(), "the page");
    window.board().enable(needs, 0, sentences);
    user.pointAt(widget(12));
    EXPECT_EQ(line.text(), "Switch it on");
    user.click(widget(10));
    user.type("9");
    EXPECT_EQ(line.text(), "no 9");
    user.type("x");
    EXPECT_EQ(line.text(), "\"x\" cannot stand here: digits only.");
    user.key("Left");
    EXPECT_EQ(line.text(), "no 9");
    user.type("x");
    line.setProgress("Restarting ...");
    EXPECT_EQ(line.text(), "Restarting ...");
    line.setProgress("");
    user.click(widget(11));  // the focus takes the refusal and the field's advice along
    EXPECT_EQ(line.text(), "the page");
    user.pointAt(widget(12));
    window.board().enable(needs, 1, sentences);
    user.pointAt(widget(11));
    user.pointAt(widget(12));
    EXPECT_EQ(line.text(), "the page") << "it is not greyed any more";
}

TEST_F(MessageLineTest, BreaksALineThatIsTooLong) {
    line.setProgress("one two three four five six seven eight nine ten");
    const std::string shown = XUser::labelOf(user.widget("message"));
    EXPECT_NE(shown, line.text()) << "without its line ends";
    line.setProgress("one two");
    EXPECT_EQ(XUser::labelOf(user.widget("message")), "one two");
}
