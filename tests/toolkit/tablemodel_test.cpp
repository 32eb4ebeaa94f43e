#include "tests/e2e/xsupport.h"
#include "toolkit/table/tablegrid.h"
#include "toolkit/table/tablemodel.h"

namespace {

using std::string_view_literals::operator""sv;

// The texts of a row, its label first.
std::string texts(const zTableModel& model, int row) {
    std::string all;
    for (int column = 0; column <= model.columns(); ++column)
        all += (column ? "|" : "") + std::string(model.text({column, row}));
    return all;
}

TEST(TableModel, ACellTakesATextOnceAndKeepsItUntilItsRowOrColumnGoes) {
    zTableModel model;
    EXPECT_FALSE(model.set({1, 1}, "x")) << "there is no such cell yet";
    model.resize(3, 2);
    const struct {
        zTableLoc location;
        std::string_view text;
        bool changed;
    } writes[] = {{{2, 1}, "b", true},     {{2, 1}, "b", false},
                  {{3, 1}, "", false},     {{1, 1}, "first", true},
                  {{0, 1}, "7", true},     {{3, 1}, "c", true},
                  {{2, 1}, "", true},      {{2, 1}, "longer than it was", true},
                  {{4, 1}, "x", false},    {{1, 3}, "x", false},
                  {{-1, 1}, "x", false},   {{1, -1}, "x", false},
                  {{1, 0}, "Label", true}, {{3, 2}, "cut\0here"sv, true},
                  {{3, 2}, "cut", false}};
    for (const auto& write : writes)
        EXPECT_EQ(model.set(write.location, write.text), write.changed) << write.text;
    EXPECT_EQ(texts(model, 1), "7|first|longer than it was|c");
    EXPECT_EQ(texts(model, 2), "|||cut");

    model.resize(2, 1);
    model.resize(3, 2);
    EXPECT_EQ(texts(model, 0), "|Label||");
    EXPECT_EQ(texts(model, 1), "7|first|longer than it was|");
    EXPECT_EQ(texts(model, 2), "|||");
}

// Row labels 30 wide, columns of 100, 50 and 80; 20 rows of 10 below labels of 15; a canvas of 150 x 60.
zTableGrid sample() {
    zTableGrid grid;
    grid.widths = {30, 100, 50, 80};
    grid.rows = 20;
    grid.rowHeight = 10;
    grid.labelHeight = 15;
    grid.setView(150, 60);
    return grid;
}

TEST(TableGrid, CellsStandBelowAndBesideTheLabelsAndAreCutAtThem) {
    zTableGrid grid = sample();
    EXPECT_EQ(grid.wholeRows(), 4);
    EXPECT_EQ(grid.lastRow(), 5) << "half of it";
    EXPECT_EQ(numbers(grid.visible({0, 0})), std::tuple(0, 0, 30, 15));
    EXPECT_EQ(numbers(grid.visible({1, 2})), std::tuple(30, 25, 100, 10));
    EXPECT_EQ(numbers(grid.visible({2, 5})), std::tuple(130, 55, 20, 5));
    EXPECT_EQ(grid.visible({3, 1}).width, 0);
    grid.scrollTo(3, 70);
    EXPECT_EQ(numbers(grid.visible({1, 3})), std::tuple(30, 15, 30, 10));
    EXPECT_EQ(numbers(grid.cell({1, 3})), std::tuple(-40, 15, 100, 10));
    EXPECT_EQ(numbers(grid.visible({1, 0})), std::tuple(30, 0, 30, 15));
    EXPECT_EQ(numbers(grid.visible({0, 3})), std::tuple(0, 15, 30, 10));
    EXPECT_EQ(grid.at(61, 16), (zTableLoc{2, 3}));
    EXPECT_EQ(grid.at(5, 59), (zTableLoc{0, 7}));
    EXPECT_EQ(grid.at(149, 5), (zTableLoc{3, 0}));
    EXPECT_EQ(grid.at(150, 5), (zTableLoc{}));
}

TEST(TableGrid, ScrollingStaysWithinWhatThereIs) {
    zTableGrid grid = sample();
    grid.scrollTo(100, 1000);
    EXPECT_EQ(grid.firstRow(), 17);
    EXPECT_EQ(grid.left(), 230 - 120);
    grid.rows = 2;
    grid.setView(400, 200);
    EXPECT_EQ(grid.firstRow(), 1);
    EXPECT_EQ(grid.left(), 0);
    EXPECT_EQ(grid.at(35, 40), (zTableLoc{})) << "below the last row";

    grid = sample();
    const struct {
        zTableLoc target;
        int firstRow, left;
    } steps[] = {{{1, 4}, 1, 0},   {{1, 5}, 2, 0},   {{2, 5}, 2, 30}, {{3, 20}, 17, 110},
                 {{1, 17}, 17, 0}, {{1, 16}, 16, 0}, {{0, 0}, 16, 0}, {{1, 99}, 17, 0}};
    for (const auto& step : steps) {
        grid.reveal(step.target);
        EXPECT_EQ(grid.firstRow(), step.firstRow) << step.target.row;
        EXPECT_EQ(grid.left(), step.left) << step.target.row;
    }
}

}  // namespace
