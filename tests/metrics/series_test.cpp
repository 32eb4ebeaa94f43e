// The course of a value over a day, against one that is calculated apart from it, and what it costs.
#include "metrics/series.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <vector>

using namespace std::chrono_literals;
using metrics::Band;
using metrics::Moment;
using metrics::Series;

namespace {

std::size_t allocations = 0, allocatedBytes = 0;

void* counted(std::size_t size) {
    ++allocations;
    allocatedBytes += size;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

constexpr Moment start{std::chrono::hours(1000)};

// A value at the k-th quarter of a second: a day's course, with peaks of one sample.
float valueAt(int k) {
    const double wave = 1000 + 900 * std::sin(k / 7000.0);
    return static_cast<float>(k % 9973 == 0 ? 50'000 : wave + k % 17);
}

std::string text(const std::optional<Band>& band) {
    return band ? fmt::format("{:g} {:g} {:g}", band->least, band->mean, band->most) : "-";
}

}  // namespace

void* operator new(std::size_t size) {
    return counted(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(Series, ADayOfQuarterSeconds) {
    constexpr int day = 24 * 3600 * 4, minute = 240, hour = 14'400;
    const auto isGap = [](int k) { return k % 50'000 < 700; };  // about three minutes, three of five in part
    const auto series = std::make_unique<Series>();
    for (int k = 0; k < day; ++k)
        if (!isGap(k)) series->add(start + k * Series::slot, start + (k + 1) * Series::slot, valueAt(k));

    int seen = 0, gaps = 0;
    for (int m = 0; m < day / minute; ++m) {
        float least = std::numeric_limits<float>::max(), most = 0;
        double sum = 0;
        int known = 0;
        for (int k = m * minute; k < (m + 1) * minute; ++k) {
            if (isGap(k)) continue;
            least = std::min(least, valueAt(k)), most = std::max(most, valueAt(k));
            sum += static_cast<double>(valueAt(k));
            ++known;
        }
        const auto band = series->over(start + m * 1min, start + (m + 1) * 1min);
        ASSERT_EQ(band.has_value(), known > 0) << m;
        if (!band) {
            ++gaps;
            continue;
        }
        ++seen;
        EXPECT_EQ(band->least, least) << m;
        EXPECT_EQ(band->most, most) << m;
        EXPECT_NEAR(band->mean, sum / known, std::abs(sum / known) * 1e-6) << m;
    }
    EXPECT_EQ(seen + gaps, 1440);
    EXPECT_GE(gaps, 10);

    // Of the last hour every sample.
    int k = day - hour;
    series->visit(start + k * Series::slot, start + 24h, [&](Moment begin, auto length, const Band& band) {
        while (isGap(k)) ++k;
        ASSERT_EQ(begin, start + k * Series::slot);
        ASSERT_EQ(length, Series::slot);
        ASSERT_EQ(band.mean, valueAt(k));
        ++k;
    });
    EXPECT_EQ(k, day);
}

TEST(Series, SamplesOfAnyLength) {
    const auto series = std::make_unique<Series>();
    const auto over = [&](auto from, auto to) { return text(series->over(start + from, start + to)); };
    EXPECT_EQ(over(0s, 1h), "-");
    series->add(start, start + 1s, 4);
    EXPECT_EQ(over(0s, 1s), "4 4 4");
    EXPECT_EQ(over(1s, 9s), "-");
    EXPECT_EQ(over(-1h, 0s), "-");
    series->add(start + 2s, start + 3s, 10);  // the second between is not known
    EXPECT_EQ(over(1s, 2s), "-");
    EXPECT_EQ(over(0s, 3s), "4 7 10");
    EXPECT_EQ(over(500ms, 2250ms), "4 6 10");  // by time: 0.5 s of 4, 0.25 s of 10
    // Ticks that are not quite regular lose nothing and leave no gap.
    Moment before = start + 3s;
    for (int i = 1; i <= 200; ++i) {
        const Moment now = start + 3s + i * 250ms + (i * 37 % 100) * 1ms;
        series->add(before, now, static_cast<float>(i));
        before = now;
    }
    int next = 1;
    series->visit(start + 3s, start + 60s, [&](Moment begin, auto, const Band& band) {
        EXPECT_EQ(begin, start + 3s + (next - 1) * 250ms);
        EXPECT_EQ(band.mean, static_cast<float>(next++));
    });
    EXPECT_EQ(next, 201);
    // Faster ones than slots: the later stands. The past stays as it is.
    series->add(start + 60s, start + 60100ms, 1);
    series->add(start + 60100ms, start + 60200ms, 2);
    EXPECT_EQ(over(60s, 60250ms), "2 2 2");
    series->add(start, start + 1s, 99);
    EXPECT_EQ(over(0s, 1s), "4 4 4");
}

TEST(Series, WhatIsOldGoes) {
    const auto series = std::make_unique<Series>();
    const auto over = [&](auto from, auto to) { return text(series->over(start + from, start + to)); };
    series->add(start, start + 1s, 5);
    series->add(start + 2h, start + 2h + 1s, 6);  // 5 is one of a minute now
    EXPECT_EQ(over(0s, 1s), "5 5 5");
    EXPECT_EQ(over(50s, 51s), "5 5 5");  // wherever in the minute
    EXPECT_EQ(over(1min, 2h), "-");
    series->add(start + 2h + 1s, start + 5h, 7);  // one sample of three hours
    EXPECT_EQ(over(3h, 4h), "7 7 7");
    EXPECT_EQ(over(2h, 5h), "6 6.99991 7");
    series->add(start + 24h, start + 24h + 1s, 8);
    EXPECT_EQ(over(0s, 1min), "5 5 5");
    series->add(start + 24h + 1min, start + 24h + 61s, 8);
    EXPECT_EQ(over(0s, 1min), "-");
    EXPECT_EQ(over(2h, 2h + 1min), "6 6.98333 7");
    series->add(start + 80h, start + 80h + 1s, 9);
    EXPECT_EQ(over(0s, 80h), "-");
    EXPECT_EQ(over(0s, 81h), "9 9 9");
    series->add(start + 81h, start + 400h, 1);  // no more of it than there is room for
    EXPECT_EQ(over(0s, 400h), "1 1 1");
    EXPECT_EQ(over(0s, 375h), "-");
}

TEST(Series, MemoryForOneEightAndAThousand) {
    for (const std::size_t count : {1U, 8U, 1000U}) {
        const std::size_t before = allocatedBytes;
        const auto all = std::make_unique<Series[]>(count);
        EXPECT_LE(allocatedBytes - before, count * 80'000 + 64);
        const std::size_t calls = allocations;
        for (int k = 0; k < 100; ++k)
            for (std::size_t i = 0; i < count; ++i)
                all[i].add(start + k * 250ms, start + (k + 1) * 250ms, static_cast<float>(k));
        EXPECT_EQ(allocations, calls);
        EXPECT_EQ(text(all[count - 1].over(start, start + 25s)), "0 49.5 99");
    }
}
