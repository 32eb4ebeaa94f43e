#include "tests/toolkit/desk.h"
#include "toolkit/plot/plot.h"

#include <X11/Xutil.h>
#include <random>

using namespace std::chrono;
using Number = zPlotColumns::Number;

namespace {

constexpr zControlRow plotRows[] = {
    {.id = 40, .kind = zKind::plot, .place = {4, 4, 200, 130}, .more = {.wider = 100, .higher = 100}}};
constexpr zLayout layout{
    .id = 1, .name = "plots", .caption = "Plots", .width = 208, .height = 140, .rows = plotRows};

// A course in slots of a quarter of a second, as it comes in.
class Course {
  public:
    static constexpr milliseconds slot{250};

    void add(zPlotTime since, zPlotTime now, float value) {
        for (Number n = since / slot; n < std::max(now / slot, since / slot + 1); ++n) slots_[n] = value;
        present = value;
    }
    zPlotSeries series(const std::string& name, const std::string& unit = "cells/s") {
        return {name, unit,
                [this](zPlotTime from, zPlotTime to, const zPlotSeries::See& see) {
                    for (auto at = slots_.lower_bound(from / slot);
                         at != slots_.end() && at->first * slot < to; ++at)
                        see(at->first * slot, slot, {at->second, at->second, at->second});
                },
                [this] { return present; }};
    }
    std::optional<double> present;

  private:
    std::map<Number, float> slots_;
};

class PlotTest : public DeskTest {
  protected:
    zPlot& plot = window.control<zPlot>(40);
    Display* display = XtDisplay(window.shell());
    std::array<Course, 8> courses;
    std::array<std::optional<zPlotTime>, 8> late;
    zPlotTime now = hours(30);

    PlotTest() : DeskTest(layout) {}

    void add(std::size_t count, const char* otherUnit = "cells/s") {
        plot.change([&](zPlotPicture& picture) {
            for (std::size_t i = 0; i < count; ++i)
                picture.add(courses[i].series(fmt::format("Series {}", i), i % 2 ? otherUnit : "cells/s"));
        });
        plot.tick(now);
        user.settle();
    }
    // All series get a value of the time since the last tick. One that is less than 0 is late: the next one
    // is of its time, too.
    template <class Value> void tick(zPlotTime later, const Value& value) {
        const zPlotTime since = std::exchange(now, now + later);
        for (std::size_t i = 0; i < courses.size(); ++i) {
            const std::optional<float> v = value(i);
            if (v && *v < 0)
                late[i] = late[i].value_or(since);
            else if (const auto from = std::exchange(late[i], std::nullopt).value_or(since); v)
                courses[i].add(from, now, *v);
        }
        plot.tick(now);
    }

    // Columns that are gaps, and not when they are asked for anew.
    int gaps() const {
        int count = 0;
        for (const auto& shown : plot.picture().shown()) {
            const zPlotColumns& seen = shown.columns;
            zPlotColumns anew;
            anew.lay(seen.width(), seen.each(), seen.last());
            anew.collect(shown.series, 0, [](const auto&, const auto&) { return false; });
            for (Number column = seen.first(); column <= seen.last(); ++column)
                count += zPlotColumns::isGap(seen.at(column)) && !zPlotColumns::isGap(anew.at(column));
        }
        return count;
    }

    // What is in the plot itself, with the labels of times.
    std::vector<unsigned long> pixels() const {
        const auto& p = plot.picture().places();
        XImage* image =
            XGetImage(display, plot.pixmap(), p.left, p.top, static_cast<unsigned>(p.right - p.left),
                      static_cast<unsigned>(p.timeBottom - p.top), AllPlanes, ZPixmap);
        std::vector<unsigned long> all;
        for (int y = 0; y < image->height; ++y)
            for (int x = 0; x < image->width; ++x) all.push_back(XGetPixel(image, x, y));
        XDestroyImage(image);
        return all;
    }
    std::vector<unsigned long> drawnAnew() {
        plot.redraw();
        return pixels();
    }
};

}  // namespace

TEST(PlotColumns, EverySampleIsInExactlyOneColumn) {
    // Pieces of a length, columns of a length: each piece has a value of its own.
    const struct {
        milliseconds piece, column;
        int width;
    } rows[] = {{250ms, 100ms, 600}, {250ms, 94ms, 640}, {250ms, 250ms, 300}, {250ms, 1000ms, 600},
                {250ms, 977ms, 613}, {250ms, 6s, 600},   {1min, 6s, 600},     {1min, 144s, 600},
                {250ms, 61s, 50},    {1min, 59s, 600}};
    for (const auto& row : rows) {
        SCOPED_TRACE(fmt::format("{} in {}", row.piece.count(), row.column.count()));
        const zPlotTime end = row.column * row.width + hours(1);
        const Number newest = zPlotColumns::columnOf(end, row.column);
        zPlotColumns columns;
        columns.lay(row.width, row.column, newest);
        std::map<Number, int> pieces;  // of a column
        const auto pieceOf = [&](zPlotTime begin) { return begin / row.piece; };
        zPlotSeries series;
        series.visit = [&](zPlotTime from, zPlotTime to, const zPlotSeries::See& see) {
            for (zPlotTime begin = from / row.piece * row.piece; begin < to; begin += row.piece) {
                const auto value = static_cast<float>(pieceOf(begin) % 100000);
                see(begin, row.piece, {value, value, value});
            }
        };
        EXPECT_EQ(columns.collect(series, 0, [](const auto&, const auto&) { return false; }),
                  columns.first() - 1);
        for (Number column = columns.first(); column <= newest; ++column) {
            const zPlotBand& band = columns.at(column);
            ASSERT_FALSE(zPlotColumns::isGap(band)) << column - columns.first();
            // It begins where the one before ended, or goes on with the same piece.
            if (column > columns.first()) {
                const float before = columns.at(column - 1).most;
                if (band.least == before)
                    ASSERT_EQ(band.most, before) << "a piece in two columns with others";
                else
                    ASSERT_EQ(band.least, before + 1) << column - columns.first();
            }
        }
    }
}

TEST(PlotColumns, PartsCollectedLaterAreTheSameAndTellWhatChanged) {
    Course course;
    const zPlotSeries series = course.series("a");
    const auto same = [](const zPlotBand& a, const zPlotBand& b) {
        return (zPlotColumns::isGap(a) && zPlotColumns::isGap(b)) ||
               (a.least == b.least && a.mean == b.mean && a.most == b.most);
    };
    std::mt19937 random(1);
    for (const milliseconds each : {94ms, 250ms, 1000ms, 6000ms}) {
        zPlotColumns columns, anew;
        zPlotTime now = hours(2), before = now;
        columns.lay(100, each, zPlotColumns::columnOf(now, each));
        for (int i = 0; i < 2000; ++i) {
            before = std::exchange(now, now + milliseconds(random() % 3000));
            if (random() % 4) course.add(before, now, static_cast<float>(random() % 1000));
            const Number newest = zPlotColumns::columnOf(now, each), lastBefore = columns.last();
            if (newest - columns.last() >= 100) continue;
            columns.scrollTo(newest);
            const Number changed = columns.collect(series, zPlotColumns::columnOf(before - 5s, each), same);
            EXPECT_GE(changed, zPlotColumns::columnOf(before - Course::slot, each));
            anew.lay(100, each, newest);
            anew.collect(series, 0, same);
            ASSERT_EQ(columns.largest(), anew.largest());
            for (Number c = columns.first(); c <= newest; ++c)
                ASSERT_TRUE(same(columns.at(c), anew.at(c))) << i << ' ' << newest - c << ' ' << lastBefore;
        }
    }
}

TEST(PlotScale, IsRound) {
    const struct {
        double value, round;
    } rows[] = {{0, 1},       {1, 1},          {1.01, 2},        {2, 2},     {3, 5},       {5, 5},
                {5.01, 10},   {10, 10},        {99, 100},        {100, 100}, {101, 200},   {999, 1000},
                {1000, 1000}, {60377, 100000}, {353208, 500000}, {1e6, 1e6}, {4.3e9, 5e9}, {5e9, 5e9}};
    for (const auto& row : rows) EXPECT_EQ(zRoundAbove(row.value), row.round) << row.value;
}

TEST(PlotScale, GrowsAtOnceAndShrinksAfterAWhile) {
    zPlotScale scale;
    // Seconds, what is to be shown, the maximum then.
    const struct {
        int time;
        double value, maximum;
        const char* what;
    } rows[] = {{0, 80, 100, "grows at once"},
                {1, 101, 200, "and again"},
                {2, 90, 200, "held"},
                {31, 90, 200, "held for 29 s"},
                {32, 15, 100, "to the most of that time"},
                {33, 15, 100, "held"},
                {50, 150, 200, "grows"},
                {51, 15, 200, "the time begins anew"},
                {80, 15, 200, "held"},
                {81, 15, 20, "shrinks in one step"},
                {82, 9, 20, "held"},
                {90, 19, 20, "needed after all"},
                {113, 9, 20, "counted from 113 s"},
                {142, 9, 20, "held"},
                {143, 9, 10, "shrinks"}};
    for (const auto& row : rows) {
        const double before = scale.maximum();
        EXPECT_EQ(scale.follow(seconds(row.time), row.value), row.maximum != before) << row.what;
        EXPECT_EQ(scale.maximum(), row.maximum) << row.time << ' ' << row.what;
    }
}

TEST(PlotScale, IsFixedByTheUser) {
    zPlotScale scale;
    scale.follow(0s, 80);
    for (const double larger : {200, 500, 1000}) {
        scale.fix(true);
        EXPECT_EQ(scale.maximum(), larger);
    }
    EXPECT_FALSE(scale.follow(1s, 70000));
    EXPECT_FALSE(scale.follow(100s, 1));
    EXPECT_EQ(scale.maximum(), 1000);
    for (const double smaller : {500, 200, 100, 50, 20, 10, 5, 2, 1, 1}) {
        scale.fix(false);
        EXPECT_EQ(scale.maximum(), smaller);
    }
    EXPECT_TRUE(scale.isFixed());
    scale.release(300);
    EXPECT_FALSE(scale.isFixed());
    EXPECT_EQ(scale.maximum(), 500);
}

// A file is written of such a copy while its name is asked for.
TEST_F(PlotTest, ACopyKeepsThePresentValuesThatItHad) {
    add(2);
    courses[0].present = 5;
    zPlotPicture copy = plot.picture();
    copy.keepPresentValues();
    courses[0].present = 7;
    courses[1].present = 8;
    EXPECT_THAT((std::array{copy.cellText(0), copy.cellText(1)}), testing::ElementsAre("5", "unknown"));
    EXPECT_EQ(plot.picture().cellText(0), "7");
}

TEST_F(PlotTest, AScrolledPictureIsTheOneThatIsDrawnAnew) {
    add(8, "packets/s");
    std::mt19937 random(7);
    const auto chance = [&](unsigned in) { return random() % in == 0; };
    float level[8] = {100, 3000, 20, 5, 700, 50, 1200, 30};
    for (const seconds span : {60s, 600s, 3600s, 86400s}) {
        plot.change([&](zPlotPicture& picture) { picture.setSpan(span); });
        user.settle();
        const milliseconds usual = span == 86400s ? 30s : span == 3600s ? 1000ms : 250ms;  // of a tick
        int different = 0, compared = 0;
        // Longer spans collect more for each picture and have fewer borders of columns to cross.
        const int ticks = span == 60s ? 1200 : 400;
        for (int i = 0; i < ticks && different == 0; ++i) {
            for (float& l : level) l = std::clamp(l + static_cast<float>(random() % 21) - 10.F, 0.F, 5000.F);
            const bool silent = chance(20);
            tick((span == 60s && i % 200 > 100 ? 1000ms : usual) +
                     milliseconds(chance(30) ? random() % 20000 : random() % 40),
                 [&](std::size_t c) -> std::optional<float> {
                     if (silent || chance(60)) return {};
                     if (late[c] ? !chance(6) : chance(60)) return -1;
                     return chance(100) ? level[c] * 4 : level[c];
                 });
            if (chance(80)) {
                plot.change([&](zPlotPicture& p) { p.scroll(-p.span() / 3); });
                user.settle();
            }
            if (chance(40)) {
                plot.change([&](zPlotPicture& p) { p.isHeld() ? p.showNow() : p.hold(); });
                user.settle();
            }
            if (chance(300)) {
                user.resize(window.shell(), 480 + static_cast<int>(random() % 200),
                            420 + static_cast<int>(random() % 80));
                user.settle();
            }
            if (plot.picture().isHeld() || i % (i < 600 ? 4 : 50)) continue;  // a held picture stands
            // What is left for the next tick is drawn in it.
            for (int more = 0; more < 5; ++more) plot.tick(now);
            EXPECT_EQ(span == 60s ? gaps() : 0, 0) << "in tick " << i << ", though they are known";
            const auto scrolled = pixels(), anew = drawnAnew();
            ASSERT_EQ(scrolled.size(), anew.size());
            const int width = plot.picture().places().right - plot.picture().places().left;
            // The newest column may wait where it is longer than a tick.
            for (std::size_t at = 0; at < anew.size(); ++at)
                if (scrolled[at] != anew[at] && (span < 600s || static_cast<int>(at) % width < width - 1) &&
                    different++ < 5)
                    ADD_FAILURE() << span.count() << " s, tick " << i << ", column "
                                  << static_cast<int>(at) % width - width << ", row "
                                  << static_cast<int>(at) / width;
            ++compared;
        }
        EXPECT_EQ(different, 0);
        EXPECT_GT(compared, 20);
    }
}
