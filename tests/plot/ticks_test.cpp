// What a tick of a plot costs: bytes to the X server, waiting for it, memory, and how late the legend may be.
#include "tests/plot/plotdesk.h"

#include <malloc.h>
#include <random>

using namespace std::chrono;

// With the address sanitizer mallinfo2() counts nothing.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

std::size_t allocatedBytes() {
    if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
    return mallinfo2().uordblks;
}

class PlotTicks : public PlotDeskTest {
  protected:
    LinkProxy& link = plotDesk().link;
    std::mt19937 random{5};
    double level[8] = {20000, 31000, 900, 700, 500, 420, 250, 120};

    bool noise = false;  // values of all sizes, anew each time
    std::optional<float> value(std::size_t i) {
        if (noise) return static_cast<float>(101 + random() % 48900);
        level[i] *= 1 + (static_cast<double>(random() % 2001) - 1000) / 40000;
        level[i] = std::clamp(level[i], 101.0, 49000.0);
        return static_cast<float>(level[i]);
    }
    // Bytes of a tick, once it has all arrived.
    std::size_t bytesOfStep(milliseconds later) {
        link.takeSent();
        step(later, [this](std::size_t i) { return value(i); });
        XFlush(XtDisplay(window->shell()));
        // As much as the plot says that it was, or more.
        std::size_t all = 0;
        user.until([&] { return (all += link.takeSent()) >= window->plot().bytesOfLastTick(); }, 2);
        std::this_thread::sleep_for(2ms);
        all += link.takeSent();
        return all;
    }
};

}  // namespace

TEST_F(PlotTicks, AreAtMost400BytesAndWaitForNothing) {
    constexpr struct {
        int series;
        const char* key;
        milliseconds tick;
        bool cursor;
        bool noise = false;
    } rows[] = {{1, "1", 1000ms, false},      {1, "1", 250ms, true},        {2, "2", 1000ms, true},
                {8, "1", 1000ms, true},       {8, "1", 250ms, false},       {8, "2", 1000ms, false},
                {8, "2", 250ms, true},        {8, "2", 500ms, false},       {8, "3", 1000ms, true},
                {8, "4", 1000ms, true},       {8, "1", 1000ms, true, true}, {8, "1", 250ms, true, true},
                {8, "2", 1000ms, true, true}, {8, "3", 1000ms, true, true}, {8, "4", 1000ms, true, true}};
    for (const auto& row : rows) {
        noise = row.noise;
        while (static_cast<int>(fed.size()) < row.series)
            add(fmt::format("value {}", fed.size()), fed.size() < 2 ? "cells/s" : "packets/s");
        user.focus(window->shell());
        user.key(row.key);
        if (row.cursor) user.key("Left");
        // All of the picture has values, and what is sent once is sent.
        for (int i = 0; i < 300; ++i) step(row.tick, [this](std::size_t s) { return value(s); });
        user.settle();
        link.take();
        std::size_t most = 0, sum = 0;
        int redrawn = 0, counted = 0;
        for (int i = 0; i < 150; ++i) {
            const double before = window->plot().picture().scales().front().range.maximum(),
                         other = window->plot().picture().scales().back().range.maximum();
            const std::size_t bytes = bytesOfStep(row.tick);
            if (window->plot().picture().scales().front().range.maximum() != before ||
                window->plot().picture().scales().back().range.maximum() != other) {
                ++redrawn;  // the scale is another one
                continue;
            }
            EXPECT_EQ(bytes, window->plot().bytesOfLastTick());
            most = std::max(most, bytes);
            sum += bytes;
            ++counted;
        }
        EXPECT_LE(most, zPlot::tickBytes) << row.series << " series, span " << row.key;
        EXPECT_LT(redrawn, 20);
        EXPECT_THAT(link.take(), testing::IsEmpty()) << row.series << " series, span " << row.key;
        if (std::getenv("TV_FIGURES"))
            fmt::print("{} series, span {}, every {} ms: {} bytes, at most {}\n", row.series, row.key,
                       row.tick.count(), sum / static_cast<std::size_t>(std::max(1, counted)), most);
    }
}

// All values change at every tick, and so do the columns: those that have no room take turns.
TEST_F(PlotTicks, WriteEachOfEightValuesWithinEight) {
    while (fed.size() < 8) add(fmt::format("value {}", fed.size()), "cells/s");
    for (const char* span : {"1", "2", "3", "4"})
        for (const milliseconds tick : {250ms, 1000ms}) {
            window->plot().onKey({span});
            const zPlotPicture& picture = window->plot().picture();
            std::array<int, 8> late{};
            int latest = 0;
            for (int i = 0; i < 400; ++i) {
                step(tick, [this](std::size_t s) { return value(s); });
                for (std::size_t s = 0; s < late.size(); ++s) {
                    late[s] = window->plot().written()[s] == picture.cellText(s) ? 0 : late[s] + 1;
                    latest = std::max(latest, late[s]);
                }
            }
            EXPECT_LT(latest, 8) << "span " << span << ", every " << tick.count() << " ms";
            if (std::getenv("TV_FIGURES"))
                fmt::print("span {}, every {} ms: within {} ticks\n", span, tick.count(), latest + 1);
        }
}

// A buffer may grow in one pass; what is kept of each tick grows in all of them.
TEST_F(PlotTicks, KeepNothingOfThem) {
    constexpr int ticks = 300;  // with each span
    constexpr const char* spans[] = {"1", "2", "3", "4"};
    while (fed.size() < 8) add(fmt::format("value {}", fed.size()), fed.size() < 4 ? "cells/s" : "packets/s");
    auto least = std::numeric_limits<std::ptrdiff_t>::max();
    for (int pass = 0; pass < 6; ++pass) {
        const std::size_t before = allocatedBytes();
        for (const char* span : spans) {
            window->plot().onKey({span});
            for (int tick = 0; tick < ticks; ++tick) {
                step(250ms, [this](std::size_t s) { return value(s); });
                application.handlePending();
            }
        }
        least = std::min(least, static_cast<std::ptrdiff_t>(allocatedBytes() - before));
    }
    EXPECT_LT(least, 4 * ticks);  // less than a byte a tick
}
