// Windows that are larger than their layouts.
#include "tests/toolkit/desk.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/table/table.h"

namespace {

using enum zKind;

constexpr zControlRow rows[] = {
    {.id = 1, .kind = notebook, .place = {4, 4, 152, 80}, .more = {.wider = 100, .higher = 100}},
    {.id = 2,
     .kind = bitmapButton,
     .place = {60, 90, 40, 14},
     .style = zDefaultButton,
     .more = {.right = 50, .down = 100}},
    {.id = 3, .kind = bitmapButton, .place = {4, 90, 40, 14}},
};
constexpr zLayout layout{.name = "wide", .caption = "Wide", .width = 160, .height = 110, .rows = rows};

constexpr zControlRow pageRows[] = {
    {.id = 4, .kind = table, .place = {0, 0, 140, 30}, .more = {.wider = 100, .higher = 25}},
    {.id = 5, .kind = table, .place = {0, 34, 140, 30}, .more = {.down = 25, .wider = 100, .higher = 75}},
};
constexpr zLayout firstPage{
    .name = "first", .caption = "First", .width = 150, .height = 65, .rows = pageRows};
constexpr zLayout laterPage{
    .name = "later", .caption = "Later", .width = 150, .height = 65, .rows = pageRows};

struct StretchingTest : DeskTest {
    zNotebook& book = window.control<zNotebook>(1);
    zBoard& first = book.addPage(firstPage);
    zBoard* later = nullptr;

    StretchingTest() : DeskTest(layout) {
        book.addPage(laterPage, [this](zBoard& board) { later = &board; });
    }
    static zRect placeOf(const zBoard& board, int id) {
        return ::placeOf(board.control<zControl>(id).outermost());
    }
    // How the place of a control differs from that before.
    static void expectMore(const zRect& now, const zRect& before, const zRect& more, const char* what) {
        EXPECT_EQ(numbers({now.x - before.x, now.y - before.y, now.width - before.width,
                           now.height - before.height}),
                  numbers(more))
            << what;
    }
};

}  // namespace

TEST_F(StretchingTest, ControlsMoveAndGrowAsTheirRowsSay) {
    const zBoard& board = window.board();
    const zRect least = board.size();
    user.resize(window.shell(), least.width, least.height);  // it may have come in the size of another test's
    const zRect places[] = {placeOf(board, 1), placeOf(board, 2), placeOf(board, 3), placeOf(first, 4),
                            placeOf(first, 5)};
    const struct { int right, down; } sizes[] = {{200, 120}, {40, 300}, {0, 0}, {200, 120}};
    for (const auto& [right, down] : sizes) {
        SCOPED_TRACE(fmt::format("{} {}", right, down));
        user.resize(window.shell(), least.width + right, least.height + down);
        expectMore(placeOf(board, 1), places[0], {0, 0, right, down}, "notebook");
        expectMore(placeOf(board, 2), places[1], {right / 2, down, 0, 0}, "button in the middle");
        expectMore(placeOf(board, 3), places[2], {}, "button that stays");
        expectMore(placeOf(first, 4), places[3], {0, 0, right, down / 4}, "upper table");
        expectMore(placeOf(first, 5), places[4], {0, down / 4, right, down * 3 / 4}, "lower table");
    }
    book.select(1);
    user.settle();
    ASSERT_TRUE(later) << "made in a window that is larger already";
    expectMore(placeOf(*later, 5), places[4], {0, 120 / 4, 200, 120 * 3 / 4}, "lower table");
    const zRect cells = ::placeOf(later->control<zTable>(5).widget()), frame = placeOf(*later, 5);
    EXPECT_EQ(cells.width, frame.width - 2 * 3) << "all of it shows cells";
}

TEST_F(StretchingTest, TheFrameOfADefaultButtonIsAroundItsPlace) {
    const zBoard& board = window.board();
    user.resize(window.shell(), board.size().width, board.size().height);
    const zRect button = board.units().pixels({60, 90, 40, 14}), whole = placeOf(board, 2);
    const int frame = button.x - whole.x;
    EXPECT_GT(frame, 2);
    EXPECT_EQ(button.y - whole.y, frame);
    EXPECT_EQ(whole.width, button.width + 2 * frame);
    EXPECT_EQ(whole.height, button.height + 2 * frame);
}

// Further windows of the layout have the last size; another one of a fixed size has none of it.
TEST_F(StretchingTest, SizesLastAndTheLayoutsIsTheSmallest) {
    const zRect least = window.board().size();
    user.resize(window.shell(), least.width + 70, least.height + 30);
    zFormDialog further(application, layout);
    further.show();
    user.settle();
    const zRect now = ::placeOf(further.shell());
    EXPECT_EQ(now.width, least.width + 70);
    EXPECT_EQ(now.height, least.height + 30);
    const int minimum = resourceOf<int>(further.shell(), XmNminWidth);
    EXPECT_EQ(minimum, least.width);
    EXPECT_LT(resourceOf<int>(further.shell(), XmNmaxWidth), minimum) << "there is none";
}
