// Values watched over time: what is asked for them, and what is known of them when the driver or a page is
// late, silent or another one.
#include "driver/dai_io.h"
#include "metrics/sampler.h"
#include "tests/support/simulator.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>

using metrics::Moment;
using metrics::Place;
using metrics::Rate;
using metrics::Service;
using metrics::Unknown;
using namespace std::chrono_literals;

namespace {

constexpr Place adapter, lec1{Service::lec, 0, 0}, signalling{Service::signalling, 0, 0};

std::string words(const Rate& rate) {
    if (const auto* why = std::get_if<Unknown>(&rate)) return metrics::wordsOf(*why);
    return fmt::format("{:.2f}", std::get<double>(rate));
}

constexpr char none[] = "nothing to compare with yet", newDriver[] = "the driver has started anew",
               silent[] = "the driver does not answer",
               notAsked[] = "not asked, since the driver does not answer";

// A simulated driver, and a clock that the test steps.
struct Ground : SampleRoot {
    Ground() { simulator.ctl("clock step 100"), channel.open(O_RDONLY); }

    void ctl(const std::string& commands) {
        std::istringstream in(commands);
        for (std::string command; std::getline(in >> std::ws, command, ';');) simulator.ctl(command);
    }

    void tick() {
        now += 1s;
        sampler.tick(1000ms);
    }

    // A page asks for the counters of the AAL, and for the circuits of signalling.
    void pageAsks() {
        aalInfo aal(page, 0);
        vccInfo circuits(page, 0);
        page.onQuery = [this](const EndedQuery& ended) {
            const Place place = ended.id == QueryId::vcTable ? signalling : adapter;
            if (!sampler.wants(place, ended.id)) return;
            auto reply = std::make_shared<metrics::Reply>(metrics::replyOf(ended.query, ended.bytes));
            reply->taken = {now, now};
            sampler.heard(place, ended.id, ended.entire, reply);
        };
        aal.GetAalStats();
        circuits.GetTable(1, 16);
    }

    // The requests since the last call.
    std::size_t requests() {
        const std::string log = simulator.ctl("log all");
        simulator.ctl("log clear");
        return static_cast<std::size_t>(std::ranges::count(log, '\n')) + (log.empty() ? 0 : 1);
    }

    Simulator simulator;
    DriverChannel channel, page{};
    Moment now = Moment(1000s);
    std::chrono::milliseconds wait{};  // how long each look at the clock takes
    metrics::Sampler sampler{channel, 0, [this] { return now += wait; }};
};

}  // namespace

TEST(Sampler, SamplesWhatIsWatched) {
    Ground ground;
    const auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    const auto again = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    const auto state = ground.sampler.watch(subjectOf(lec1, "", "state"));
    EXPECT_EQ(cells, again);
    const struct {
        const char* commands;
        const char *cells, *state;
    } ticks[] = {
        {"set adapter 1 rxCells 1000; set lec 1.1 state 6", none, "6.00"},
        {"set adapter 1 rxCells 1500", "500.00", "6.00"},
        {"set lec 1.1 state 2", "0.00", "2.00"},
        {"fault adapter.aal nth 1 resp 9", "the driver refuses to say", "2.00"},
        {"set adapter 1 rxCells 1600", none, "2.00"},
        {"set adapter 1 rxCells 1610; fault lec.state nth 1 hangup", "10.00", silent},
        {"set adapter 1 rxCells 1700", newDriver, "2.00"},
        {"set adapter 1 rxCells 1720", "20.00", "2.00"},
    };
    for (const auto& tick : ticks) {
        ground.ctl(tick.commands);
        ground.tick();
        EXPECT_EQ(words(cells->last()), tick.cells) << tick.commands;
        EXPECT_EQ(words(state->last()), tick.state) << tick.commands;
        EXPECT_EQ(cells->moment(), ground.now);
    }
    // The seconds with a rate, and the gaps: of the refusal, the one after it, and the new driver.
    const char* seconds[] = {"500.00", "0.00", "gap", "gap", "10.00", "gap", "20.00"};
    for (int i = 0; i < std::ssize(seconds); ++i) {
        const auto band = cells->series().over(Moment(1001s) + i * 1s, Moment(1001s) + i * 1s + 750ms);
        EXPECT_EQ(band ? fmt::format("{:.2f}", band->mean) : "gap", seconds[i]) << i;
    }
}

// Rows are followed by their keys, wherever the driver lists them.
TEST(Sampler, FollowsARow) {
    Ground ground;
    ground.ctl("rows vc 1 3; set vc 1 row 1 vci 40; set vc 1 row 2 vci 41; set vc 1 row 3 vci 42");
    const auto row = ground.sampler.watch(subjectOf(adapter, "circuits", "rxFrames", "41"));
    EXPECT_EQ(metrics::nameOf(row->subject()), "adapter1.circuits.41.rxFrames/s");
    EXPECT_EQ(metrics::unitOf(row->subject()), "frames/s");
    const struct {
        const char *commands, *rate;
    } ticks[] = {
        {"set vc 1 row 2 rxPackets 100", none},
        {"set vc 1 row 2 rxPackets 130", "30.00"},
        {"set vc 1 row 2 vci 43; set vc 1 row 1 vci 41; set vc 1 row 1 rxPackets 137", "7.00"},
        {"set vc 1 row 1 vci 44", "the table has no such row"},
        {"set vc 1 row 3 vci 41; set vc 1 row 3 rxPackets 140", none},
        {"set vc 1 row 2 vci 41", "several rows have this key"},
    };
    for (const auto& tick : ticks) {
        ground.ctl(tick.commands);
        ground.tick();
        EXPECT_EQ(words(row->last()), tick.rate) << tick.commands;
    }
}

// What a page asks between two ticks is asked once, be the page late; without it the sampler asks itself.
TEST(Sampler, SharesWhatPagesAsk) {
    Ground ground;
    ground.page.open(O_RDONLY);
    const auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    const auto frames = ground.sampler.watch(subjectOf(signalling, "", "ilmiRxFrames"));
    ground.ctl("set adapter 1 rxCells 1000; set vc 1 row 1 vci 16; set vc 1 row 1 rxPackets 5");
    ground.tick();
    ground.requests();
    const struct {
        const char* commands;
        bool page;
        std::size_t requests;
        const char *cells, *frames;
    } ticks[] = {
        {"set adapter 1 rxCells 1120; set vc 1 row 1 rxPackets 8", true, 2, "200.00", "5.00"},  // 0.6 seconds
        {"set adapter 1 rxCells 1220", true, 2, "100.00", "0.00"},
        {"set adapter 1 rxCells 9999", false, 0, "100.00", "0.00"},  // the page is late: nothing new
        {"set adapter 1 rxCells 1420", true, 2, "100.00", "0.00"},   // two seconds
        {"set adapter 1 rxCells 1500", false, 0, "100.00", "0.00"},
        {"set adapter 1 rxCells 1660; set vc 1 row 1 rxPackets 20", false, 4, "100.00",
         "5.00"},  // 2.4 seconds
        {"set adapter 1 rxCells 1760", false, 4, "100.00", "0.00"},
    };
    for (const auto& tick : ticks) {
        ground.ctl(tick.commands);
        ground.now += 600ms;
        if (tick.page) ground.pageAsks();
        ground.now += 400ms;
        ground.sampler.tick(1000ms);
        EXPECT_EQ(words(cells->last()), tick.cells) << tick.commands;
        EXPECT_EQ(words(frames->last()), tick.frames) << tick.commands;
        EXPECT_EQ(ground.requests(), tick.requests) << tick.commands;
    }
}

// A driver that does not answer is asked for one thing a tick, and then left alone for three times the wait.
TEST(Sampler, LeavesASilentDriverAlone) {
    Ground ground;
    const auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    const auto state = ground.sampler.watch(subjectOf(lec1, "", "state"));
    ground.tick();
    const struct {
        const char* commands;
        std::size_t requests;
        const char *cells, *state;
        std::chrono::milliseconds wait = 0ms;  // for an answer
    } ticks[] = {
        {"fault adapter.aal every errno 62", 1, silent, notAsked, 150ms},
        {"", 0, notAsked, notAsked},
        {"fault clear", 0, notAsked, notAsked},
        {"", 2, none, "0.00"},
        {"", 2, "0.00", "0.00"},
    };
    ground.ctl("set lec 1.1 state 0");
    for (const auto& tick : ticks) {
        ground.ctl(tick.commands);
        ground.requests();
        ground.wait = tick.wait;
        ground.tick();
        EXPECT_EQ(ground.requests(), tick.requests) << tick.commands;
        EXPECT_EQ(words(cells->last()), tick.cells) << tick.commands;
        EXPECT_EQ(words(state->last()), tick.state) << tick.commands;
    }
}

// While the user waits a long tick ends, and gives nothing; the next one counts from before it.
TEST(Sampler, GivesWayToTheUser) {
    Ground ground;
    const auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    ground.sampler.interrupt = [] { return true; };
    ground.ctl("set adapter 1 rxCells 100");
    ground.tick();
    ground.ctl("set adapter 1 rxCells 200");
    ground.tick();
    EXPECT_EQ(words(cells->last()), "100.00");  // it was quick enough
    const Moment before = cells->moment();
    ground.ctl("set adapter 1 rxCells 1000");
    ground.wait = 100ms;
    ground.tick();
    EXPECT_EQ(cells->moment(), before);
    ground.ctl("set adapter 1 rxCells 500");
    ground.wait = 0ms;
    ground.tick();
    const double seconds = std::chrono::duration<double>(cells->moment() - before).count();
    EXPECT_GT(seconds, 2);
    EXPECT_EQ(words(cells->last()), words(300 / seconds));
}

// A user who is always at work leaves each tick one request: places take turns.
TEST(Sampler, GoesOnWithWhatItHasLeft) {
    Ground ground;
    const auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    const auto state = ground.sampler.watch(subjectOf(lec1, "", "state"));
    ground.tick();
    ground.wait = 100ms;
    int asked = 0;
    ground.sampler.interrupt = [&] { return ++asked > 1; };
    const Moment before[] = {cells->moment(), state->moment()};
    for (int tick = 0; tick < 4; ++tick, asked = 0) ground.tick();
    EXPECT_GT(cells->moment(), before[0]);
    EXPECT_GT(state->moment(), before[1]);
}

// One between two ticks: over so short a time a rate says nothing.
TEST(Sampler, ComparesWithWhatIsFarEnough) {
    Ground ground;
    const auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    const struct {
        std::chrono::milliseconds later;
        const char *commands, *cells;
    } ticks[] = {
        {1s, "set adapter 1 rxCells 1000", none},        {1s, "set adapter 1 rxCells 1100", "100.00"},
        {100ms, "set adapter 1 rxCells 1220", "200.00"},  // in 1.1 seconds
        {900ms, "set adapter 1 rxCells 1310", "100.00"}, {1s, "set adapter 1 rxCells 1400", "90.00"},
    };
    for (const auto& tick : ticks) {
        ground.ctl(tick.commands);
        ground.now += tick.later;
        ground.sampler.tick(1000ms);
        EXPECT_EQ(words(cells->last()), tick.cells) << tick.commands;
    }
}

TEST(Sampler, EndsWithTheLastWhoWatches) {
    Ground ground;
    auto cells = ground.sampler.watch(subjectOf(adapter, "", "rxCells"));
    auto other = cells;
    EXPECT_TRUE(ground.sampler.wants(adapter, QueryId::aalStats));
    EXPECT_FALSE(ground.sampler.wants({.adapter = 1}, QueryId::aalStats));
    cells.reset();
    EXPECT_TRUE(ground.sampler.wants(adapter, QueryId::aalStats));
    other.reset();
    EXPECT_FALSE(ground.sampler.wants(adapter, QueryId::aalStats));
    ground.requests();
    ground.tick();
    EXPECT_EQ(ground.requests(), 0U);
}
