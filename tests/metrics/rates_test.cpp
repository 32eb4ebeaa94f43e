// Rates of counters that grow by known amounts, wrap, are set back, stand still and belong to others.
#include "metrics/rates.h"
#include "tests/support/simulator.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>

using metrics::Group;
using metrics::Metric;
using metrics::Moment;
using metrics::Rate;
using metrics::Rates;
using metrics::Service;
using metrics::Smoothing;
using metrics::Taken;
using metrics::Unknown;

namespace {

constexpr double link25Limit = 60'377, sonetLimit = 353'208;
constexpr unsigned link25Kind = 1, multimode = 2;

Moment moment(double seconds) {
    return Moment(std::chrono::round<Moment::duration>(std::chrono::duration<double>(seconds)));
}

std::string words(const Rate& rate) {
    if (const auto* why = std::get_if<Unknown>(&rate)) return metrics::wordsOf(*why);
    return fmt::format("{:.2f}", std::get<double>(rate));
}

constexpr char none[] = "nothing to compare with yet", setBack[] = "the counter was set back",
               tooLong[] = "too long since the reading before", newDriver[] = "the driver has started anew",
               shared[] = "several rows have this key", absent[] = "there is no such service",
               refused[] = "the driver refuses to say", incomplete[] = "the driver's answer is incomplete";

// A simulated driver, and a clock that the test steps.
struct Driver : SampleRoot {
    Driver() { simulator.ctl("clock step 100"), channel.open(O_RDONLY); }

    void ctl(const std::string& commands) {
        std::istringstream in(commands);
        for (std::string command; std::getline(in >> std::ws, command, ';');) simulator.ctl(command);
    }

    // Reads a service of the first adapter `seconds` later.
    void tick(Rates& rates, Service service, double seconds) {
        now += seconds;
        channel.alive();
        const std::string driver = std::to_string(channel.reopenings());
        metrics::Reader reader(channel, [this] { return moment(now); });
        const double limit = metrics::linkLimit(
            reader.read({}, [](const Group& group) { return group.query == QueryId::suniStats; }));
        rates.add(reader.read({service, 0, 0}), driver, limit);
    }

    Simulator simulator;
    DriverChannel channel;
    double now = 1000;
};

// "rxCells", "connections.rxPackets"
std::string rateOf(const Rates& rates, Service service, const std::string& name, std::size_t row = 0) {
    for (const Group& group : metrics::groupsOf(service))
        for (const Metric& metric : group.metrics)
            if (name == (group.isTable() ? group.table + std::string(".") : "") + metric.name)
                return words(rates.rate(group, metric, row));
    return "there is no " + name;
}

}  // namespace

TEST(Rates, OfTwoReadings) {
    const struct {
        std::uint32_t before, now;
        Taken first, second;
        unsigned bits;
        double limit;
        const char* rate;
    } cases[] = {
        {100, 350, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, link25Limit, "250.00"},
        {100, 350, {moment(1), moment(1)}, {moment(1.25), moment(1.25)}, 32, link25Limit, "1000.00"},
        {100, 350, {moment(1), moment(1)}, {moment(26), moment(26)}, 32, link25Limit, "10.00"},
        {7, 7, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, link25Limit, "0.00"},  // stands still
        {4294967290, 4, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, link25Limit, "10.00"},
        {65530, 4, {moment(1), moment(1)}, {moment(1.5), moment(1.5)}, 16, link25Limit, "20.00"},
        {0, 60377, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, link25Limit, "60377.00"},
        {0, 60378, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, link25Limit, setBack},
        {4294900000, 4294900000 - 1, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, sonetLimit, setBack},
        {1000000, 0, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, sonetLimit, setBack},
        {0, 353208, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, sonetLimit, "353208.00"},
        {0, 353209, {moment(1), moment(1)}, {moment(2), moment(2)}, 32, sonetLimit, setBack},
        // A full link, whose answers take unlike times: the time between may have been 1.1 s.
        {0, 62000, {moment(1), moment(1.1)}, {moment(2), moment(2.1)}, 32, link25Limit, "62000.00"},
        {0, 67000, {moment(1), moment(1.1)}, {moment(2), moment(2.1)}, 32, link25Limit, setBack},
        {0, 1000, {moment(1), moment(1)}, {moment(12159), moment(12159)}, 32, sonetLimit, "0.08"},
        {0, 1000, {moment(1), moment(1)}, {moment(12162), moment(12162)}, 32, sonetLimit, tooLong},
        {0, 1000, {moment(1), moment(1)}, {moment(12162), moment(12162)}, 32, link25Limit, "0.08"},
        {5, 9, {moment(1), moment(1)}, {moment(1), moment(1)}, 32, link25Limit, none},  // one reading twice
    };
    for (const auto& c : cases)
        EXPECT_EQ(words(metrics::rateOf({c.before, c.first}, {c.now, c.second}, c.bits, c.limit)), c.rate)
            << c.before << " " << c.now;
}

TEST(Rates, OfADriver) {
    Driver driver;
    Rates rates;
    const struct {
        double seconds;
        const char* commands;
        const char* rate;  // of the cells received
    } ticks[] = {
        {1, "set adapter 1 rxCells 1000", none},
        {1, "set adapter 1 rxCells 1500", "500.00"},
        {0.25, "set adapter 1 rxCells 1600", "400.00"},  // early
        {4, "set adapter 1 rxCells 1800", "50.00"},      // late
        {1, "", "0.00"},
        {1, "fault adapter.aal nth 1 resp 9; set adapter 1 rxCells 1900", refused},
        {1, "set adapter 1 rxCells 2000", none},
        {1, "set adapter 1 rxCells 2100", "100.00"},
        {1, "fault adapter.aal nth 1 short 20", incomplete},
        {1, "", none},
        {1, "set adapter 1 rxCells 0", setBack},
        {1, "set adapter 1 rxCells 10", "10.00"},
        {1, "set adapter 1 rxCells 4294967000", setBack},
        {1, "set adapter 1 rxCells 4", "300.00"},
        {1, "set adapter 1 rxCells 353212", "353208.00"},
        {1, "link 1 25; set adapter 1 rxCells 413589", "60377.00"},
        {1, "set adapter 1 rxCells 473967", setBack},
        {1, "fault adapter.suni nth 1 resp 9; set adapter 1 rxCells 773967", "300000.00"},
        {1, "fault adapter.aal nth 1 hangup", "the driver does not answer"},
        {1, "set adapter 1 rxCells 773987", newDriver},
        {1, "set adapter 1 rxCells 774000", "13.00"},
        // The driver goes after it has told the counters: they are still those of the driver before.
        {1, "fault vc.rows nth 1 hangup; set adapter 1 rxCells 774007", "7.00"},
        {1, "set adapter 1 rxCells 774017", newDriver},
        {1, "", "0.00"},
    };
    for (const auto& tick : ticks) {
        SCOPED_TRACE(tick.commands);
        driver.ctl(tick.commands);
        driver.tick(rates, Service::adapter, tick.seconds);
        EXPECT_EQ(rateOf(rates, Service::adapter, "rxCells"), tick.rate);
    }
}

TEST(Rates, OfAServiceThatComesAndGoes) {
    Driver driver;
    driver.ctl("set vc 1 row 1 vci 5; set vc 1 row 1 rxPackets 100; set vc 1 row 2 vci 16;"
               "set vc 1 row 2 rxPackets 900; set lec 1.1 controlDirectVci 5");
    Rates rates;
    const struct {
        const char* commands;
        const char* rate;  // of the packets received on control direct
    } ticks[] = {
        {"", none},
        {"set vc 1 row 1 rxPackets 130", "30.00"},
        {"set lec 1.1 state 0", absent},
        {"set lec 1.1 state 6; set vc 1 row 1 rxPackets 135", none},
        {"set vc 1 row 1 rxPackets 140", "5.00"},
        {"set lec 1.1 state 3", "not connected"},
        {"set lec 1.1 state 6", none},
        {"set vc 1 row 1 rxPackets 141", "1.00"},
        {"set lec 1.1 controlDirectVci 16", none},  // another circuit has another counter
        {"set vc 1 row 2 rxPackets 902", "2.00"},
    };
    for (const auto& tick : ticks) {
        SCOPED_TRACE(tick.commands);
        driver.ctl(tick.commands);
        driver.tick(rates, Service::lec, 1);
        EXPECT_EQ(rateOf(rates, Service::lec, "controlDirectRxPackets"), tick.rate);
    }
}

// A row is known again by its key, wherever it stands.
TEST(Rates, OfRows) {
    Driver driver;
    const auto row = [&](int number, int vci, int packets) {
        driver.ctl(
            fmt::format("set vc 1 row {0} vci {1}; set vc 1 row {0} rxPackets {2}", number, vci, packets));
    };
    driver.ctl("rows vc 1 3");
    row(1, 40, 1000), row(2, 50, 2000), row(3, 60, 3000);
    Rates rates;
    driver.tick(rates, Service::adapter, 1);
    const auto circuits = [&] {
        std::string all;
        for (std::size_t i = 0; i < 3; ++i)
            all += rateOf(rates, Service::adapter, "circuits.rxFrames", i) + '|';
        return all;
    };
    EXPECT_EQ(circuits(), fmt::format("{0}|{0}|{0}|", none));
    row(1, 60, 3030), row(2, 40, 1010), row(3, 70, 5);
    driver.tick(rates, Service::adapter, 2);
    EXPECT_EQ(circuits(), fmt::format("15.00|5.00|{}|", none));
    row(2, 70, 6);
    driver.tick(rates, Service::adapter, 1);
    EXPECT_EQ(circuits(), fmt::format("0.00|{0}|{0}|", shared));
    row(2, 40, 1020);
    driver.tick(rates, Service::adapter, 1);  // 70 was no one's, 40 was not there
    EXPECT_EQ(circuits(), fmt::format("0.00|{}|{}|", none, shared));
    driver.ctl("rows vc 1 0");
    driver.tick(rates, Service::adapter, 1);
    driver.ctl("rows vc 1 3");
    driver.tick(rates, Service::adapter, 1);
    EXPECT_EQ(circuits(), fmt::format("{0}|{0}|{0}|", none));
}

TEST(Rates, ReadingsOfAnotherDriverAreNotCompared) {
    Driver driver;
    Rates rates;
    const auto add = [&](const char* of) {
        driver.now += 1;
        metrics::Reader reader(driver.channel, [&] { return moment(driver.now); });
        rates.add(reader.read({}), of, sonetLimit);
        return rateOf(rates, Service::adapter, "txCells");
    };
    EXPECT_EQ(add("boot 1, 00:a0:3e:00:00:01"), none);
    EXPECT_EQ(add("boot 1, 00:a0:3e:00:00:01"), "0.00");
    EXPECT_EQ(add("boot 2, 00:a0:3e:00:00:01"), newDriver);
    EXPECT_EQ(add("boot 2, 00:a0:3e:00:00:01"), "0.00");
}

TEST(Rates, SmoothedOverTenSeconds) {
    Driver driver;
    Rates rates(Smoothing::tenSeconds);
    std::uint32_t cells = 0;
    const auto tick = [&](double seconds, std::uint32_t growth) {
        driver.ctl(fmt::format("set adapter 1 rxCells {}", cells += growth));
        driver.tick(rates, Service::adapter, seconds);
        return rateOf(rates, Service::adapter, "rxCells");
    };
    EXPECT_EQ(tick(1, 5), none);
    EXPECT_EQ(tick(1, 100), "100.00");
    EXPECT_EQ(tick(3, 0), "25.00");
    for (int i = 0; i < 5; ++i) tick(1, 100);
    EXPECT_EQ(tick(1, 100), "70.00");  // 100, 0 for 3 s, 600 in 6 s
    EXPECT_EQ(tick(1, 100), "72.73");  // the three are needed as long as there are not ten without them
    EXPECT_EQ(tick(1, 100), "75.00");
    EXPECT_EQ(tick(1, 100), "76.92");
    EXPECT_EQ(tick(1, 100), "100.00");  // ten seconds of 100
    rates.smooth(Smoothing::none);
    EXPECT_EQ(tick(0.5, 10), "20.00");
    rates.smooth(Smoothing::tenSeconds);
    EXPECT_EQ(tick(0.5, 0), "10.00");  // what was kept
    driver.ctl("fault adapter.aal nth 1 resp 9");
    EXPECT_EQ(tick(1, 100), refused);
    EXPECT_EQ(tick(1, 100), none);
    EXPECT_EQ(tick(1, 40), "40.00");  // nothing from before the gap
}

TEST(Rates, LinkLimitsAreRows) {
    Driver driver;
    const auto limit = [&](unsigned kind) {
        metrics::Reader reader(driver.channel);
        driver.ctl(fmt::format("set adapter 1 link {}", kind));
        return metrics::linkLimit(reader.read({}));
    };
    EXPECT_EQ(limit(link25Kind), link25Limit);
    for (unsigned kind = multimode; kind <= 4; ++kind) EXPECT_EQ(limit(kind), sonetLimit);
    EXPECT_EQ(limit(99), sonetLimit);  // the fastest, as long as nobody knows
}
