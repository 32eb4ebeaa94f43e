// Rates of tables whose rows come, go, move and share keys, against a calculation that keeps every reading.
#include "driver/layout.h"
#include "metrics/rates.h"
#include "metrics/series.h"
#include "tests/support/storedreplies.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <random>

using metrics::Group;
using metrics::Metric;
using metrics::Moment;
using metrics::Rate;
using metrics::Rates;
using metrics::Reading;
using metrics::Service;
using metrics::Smoothing;
using metrics::Unknown;

// With the address sanitizer mallinfo2() counts nothing.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

std::size_t allocatedBytes() {
    if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
    return mallinfo2().uordblks;
}

constexpr double limit = 353'208;

void put(ByteVector& bytes, std::size_t at, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
}

// A table whose rows have a key, and a counter of a circuit that may be another one at the next reading.
struct TableKind {
    Service service;
    QueryId query;
    std::size_t rowSize, key, keyWidth;
    std::optional<layout::U16> circuit;
    layout::U32 count;
    const char* metric;
};
constexpr TableKind kinds[] = {
    {Service::adapter,
     QueryId::vcTable,
     layout::vcRow::size,
     layout::vcRow::vci.offset,
     2,
     {},
     layout::vcRow::rx,
     "rxFrames"},
    {Service::les, QueryId::lesTable, layout::lesRow::size, layout::lesRow::mac.offset, 6,
     layout::lesRow::controlVci, layout::lesRow::controlRx, "controlDirectRxPackets"},
};

struct Row {
    std::uint64_t key;
    std::uint16_t circuit;
    std::uint32_t count;
};

// A table that changes a little from reading to reading, and a driver that has it.
class Changing {
  public:
    Changing(const TableKind& kind, unsigned seed) : kind_(kind), random_(seed) {
        channel_.open(O_RDONLY);
        while (rows_.size() < 20) add();
    }

    Reading reading(double seconds) {
        now_ += std::chrono::round<Moment::duration>(std::chrono::duration<double>(seconds));
        for (Row& row : rows_) row.count += below(1000);
        if (oneIn(4)) rows_[below(rows_.size())].count = below(50);
        if (oneIn(8)) rows_[below(rows_.size())].circuit ^= 1;
        if (rows_.size() > 10 && oneIn(6)) rows_.erase(rows_.begin() + below(rows_.size()));
        if (rows_.size() < 30 && oneIn(6)) add();
        if (oneIn(8)) std::swap(rows_[below(rows_.size())], rows_[below(rows_.size())]);
        if (oneIn(12)) rows_[below(rows_.size())].key = rows_[below(rows_.size())].key;
        if (oneIn(30)) std::ranges::shuffle(rows_, random_);
        driver_.refused.clear();
        if (oneIn(40)) driver_.refused.insert(kind_.query);
        if (oneIn(40)) ++run_;
        ByteVector bytes(rows_.size() * kind_.rowSize);
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            const std::size_t at = i * kind_.rowSize;
            put(bytes, at + kind_.key, rows_[i].key, kind_.keyWidth);
            if (kind_.circuit) put(bytes, at + kind_.circuit->offset, rows_[i].circuit, 2);
            put(bytes, at + kind_.count.offset, rows_[i].count, 4);
        }
        driver_.replies[kind_.query] = bytes;
        driver_.replies[QueryId::lesState] = {1, 0, 0, 0};
        metrics::Reader reader(channel_, [this] { return now_; });
        return reader.read({kind_.service, 0, 0});
    }
    std::string run() const { return std::to_string(run_); }

  private:
    std::uint32_t below(std::size_t end) {
        return std::uniform_int_distribution<std::uint32_t>(0, static_cast<std::uint32_t>(end - 1))(random_);
    }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    void add() {
        const std::uint64_t key = below(60);
        rows_.push_back({key, std::uint16_t(100 + below(9)), 4'294'960'000U + below(9000)});
    }

    const TableKind& kind_;
    std::mt19937 random_;
    StoredReplies driver_;
    DriverChannel channel_;
    Moment now_{std::chrono::hours(5)};
    std::vector<Row> rows_;
    int run_ = 0;
};

struct Past {
    Reading reading;
    std::string run;
};

// The calculation: which row has this key, and how much it has grown in one step.
class Plain {
  public:
    Plain(const Group& group, const Metric& metric) : group_(group), metric_(metric) {
        key_ = &*std::ranges::find(group.metrics, std::string_view(group.key), &Metric::name);
    }

    metrics::Value keyOf(const Reading& reading, std::size_t row) const {
        return reading.value(group_, *key_, row);
    }
    std::optional<std::size_t> find(const Reading& reading, const metrics::Value& key) const {
        std::optional<std::size_t> found;
        for (std::size_t row = 0; !reading.missing(group_) && row < reading.rows(group_); ++row) {
            if (keyOf(reading, row) != key) continue;
            if (found) return {};
            found = row;
        }
        return found;
    }
    std::optional<std::uint32_t> growth(const Past& before, const Past& now,
                                        const metrics::Value& key) const {
        const auto rowBefore = find(before.reading, key), rowNow = find(now.reading, key);
        if (before.run != now.run || !rowBefore || !rowNow) return {};
        const auto circuit = [&](const Reading& reading, std::size_t row) -> metrics::Value {
            if (!metric_.circuit) return true;
            Metric vci = metric_;
            vci.read = metric_.circuit;
            return reading.value(group_, vci, row);
        };
        if (circuit(before.reading, *rowBefore) != circuit(now.reading, *rowNow)) return {};
        const auto growth = std::get<std::uint32_t>(now.reading.value(group_, metric_, *rowNow)) -
                            std::get<std::uint32_t>(before.reading.value(group_, metric_, *rowBefore));
        if (growth > limit * secondsBetween(before, now)) return {};
        return growth;
    }
    static double secondsBetween(const Past& before, const Past& now) {
        return std::chrono::duration<double>(now.reading.begun() - before.reading.begun()).count();
    }

  private:
    const Group& group_;
    const Metric& metric_;
    const Metric* key_;
};

const Group& tableOf(Service service) {
    return *std::ranges::find_if(metrics::groupsOf(service), &Group::isTable);
}

// Whether the rate is that of the time since a reading of about ten seconds ago, or since about the last one
// after which all are known.
bool isSmoothed(const Plain& plain, const std::vector<Past>& all, std::size_t row, double rate, double tick) {
    const metrics::Value key = plain.keyOf(all.back().reading, row);
    const double most = std::max(tick, 2.0) + tick;
    std::vector<double> found;
    double total = 0, seconds = 0;
    for (std::size_t i = all.size() - 1; i > 0 && seconds < 10 + most; --i) {
        const auto growth = plain.growth(all[i - 1], all[i], key);
        if (!growth) break;
        total += *growth, seconds += Plain::secondsBetween(all[i - 1], all[i]);
        if (std::abs(total / seconds - rate) <= 1e-9 * rate) found.push_back(seconds);
    }
    return std::ranges::any_of(
        found, [&](double time) { return time >= std::min(10.0, seconds - most) && time < 10 + most; });
}

}  // namespace

TEST(RatesOfRows, LastReadings) {
    for (const TableKind& kind : kinds) {
        const Group& group = tableOf(kind.service);
        const Metric& metric =
            *std::ranges::find(group.metrics, std::string_view(kind.metric), &Metric::name);
        const Plain plain(group, metric);
        Changing table(kind, 7);
        Rates rates;
        std::vector<Rate> all;
        std::optional<Past> before;
        std::map<std::string, int> seen;
        for (int tick = 0; tick < 700; ++tick) {
            Past now{table.reading(1), table.run()};
            rates.add(now.reading, now.run, limit);
            rates.rates(group, metric, all);
            ASSERT_EQ(all.size(), now.reading.missing(group) ? 0 : now.reading.rows(group));
            for (std::size_t row = 0; row < all.size(); ++row) {
                ASSERT_EQ(all[row], rates.rate(group, metric, row)) << tick << " " << row;
                const auto growth =
                    before ? plain.growth(*before, now, plain.keyOf(now.reading, row)) : std::nullopt;
                const double* known = std::get_if<double>(&all[row]);
                ASSERT_EQ(known != nullptr, growth.has_value()) << tick << " " << row;
                if (known) {
                    ASSERT_DOUBLE_EQ(*known, *growth);
                }
                ++seen[known ? "known" : metrics::wordsOf(std::get<Unknown>(all[row]))];
            }
            before = now;
        }
        EXPECT_EQ(seen.size(), 5U) << fmt::format("{}", fmt::join(seen, " "));
    }
}

TEST(RatesOfRows, SmoothedFromAFewReadings) {
    for (const TableKind& kind : kinds)
        for (const double seconds : {0.25, 1.0, 1.5, 1.9, 3.0, 25.0}) {
            const Group& group = tableOf(kind.service);
            const Metric& metric =
                *std::ranges::find(group.metrics, std::string_view(kind.metric), &Metric::name);
            const Plain plain(group, metric);
            Changing table(kind, 11);
            Rates rates(Smoothing::tenSeconds);
            std::vector<Past> past;
            std::vector<Rate> all;
            for (int tick = 0; tick < 200; ++tick) {
                past.push_back({table.reading(seconds), table.run()});
                rates.add(past.back().reading, past.back().run, limit);
                ASSERT_LE(rates.kept(), 8U);
                if (tick % 4 != 0) continue;
                rates.rates(group, metric, all);
                for (std::size_t row = 0; row < all.size(); ++row) {
                    ASSERT_EQ(all[row], rates.rate(group, metric, row));
                    if (const double* rate = std::get_if<double>(&all[row])) {
                        ASSERT_TRUE(isSmoothed(plain, past, row, *rate, seconds))
                            << kind.metric << " " << seconds << " s, " << tick << ", row " << row;
                    }
                }
            }
        }
}

// With rows that come and go. A byte more a reading would be 25,200.
TEST(RatesOfRows, EightHoursTakeNoMoreMemoryThanOne) {
    constexpr int hour = 3600;
    const Group& group = tableOf(kinds[0].service);
    const Metric& metric = *std::ranges::find(group.metrics, std::string_view("rxFrames"), &Metric::name);
    Changing table(kinds[0], 3);
    Rates rates(Smoothing::tenSeconds);
    const auto course = std::make_unique<metrics::Series>();
    std::vector<Rate> all;
    Moment before{};
    std::size_t inUse = 0;
    for (int tick = 1; tick <= 8 * hour; ++tick) {
        Reading reading = table.reading(1);
        const Moment now = reading.begun();
        rates.add(std::move(reading), table.run(), limit);
        rates.rates(group, metric, all);
        if (!all.empty())
            if (const double* rate = std::get_if<double>(&all.front()))
                course->add(before, now, static_cast<float>(*rate));
        before = now;
        if (tick == hour) inUse = allocatedBytes();
    }
    EXPECT_LT(allocatedBytes(), inUse + 25'000);
    EXPECT_GT(inUse, sizeof(metrics::Series));
}

// The bytes that are compared are those that the key is read from.
TEST(RatesOfRows, KeysAreTheBytesOfTheirColumn) {
    StoredReplies driver;
    DriverChannel channel;
    channel.open(O_RDONLY);
    for (const Group& group : metrics::groups()) {
        if (!group.isTable()) continue;
        const auto key = std::ranges::find(group.metrics, std::string_view(group.key), &Metric::name);
        const auto read = [&](const ByteVector& row) {
            driver.replies[group.query] = row;
            for (const QueryId state :
                 {QueryId::lecState, QueryId::lesState, QueryId::lecsState, QueryId::ipState})
                driver.replies[state] = {1, 0, 0, 0};
            return metrics::Reader(channel).read({group.service, 0, 0}).value(group, *key, 0);
        };
        ByteVector row(queryOf(group.query).size);
        const metrics::Value zeros = read(row);
        for (std::size_t at = 0; at < row.size(); ++at) {
            row[at] = 1;
            const bool isKey = at >= group.keyBytes.at && at < group.keyBytes.at + group.keyBytes.length;
            EXPECT_EQ(read(row) != zeros, isKey) << metrics::nameOf({group.service}) << " " << at;
            row[at] = 0;
        }
    }
}
