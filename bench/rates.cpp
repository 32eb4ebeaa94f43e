// What rates and courses of values cost.
//
// bench_rates rows COUNT ROUNDS: microseconds of a tick with a table of virtual circuits of so many rows.
// bench_rates series COUNT: kilobytes that so many series take, all of their values written.
// bench_rates hours COUNT: so many hours at four readings a second on a stepped clock, of an adapter with
// 1,000 circuits whose counters grow, with smoothing and eight series: kilobytes in use after each hour.
#include "metrics/rates.h"
#include "metrics/series.h"
#include "tests/support/storedreplies.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <functional>
#include <malloc.h>
#include <string>
#include <sys/resource.h>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using metrics::Moment;
using metrics::Rate;
using metrics::Rates;
using metrics::Reading;
using metrics::Series;
using metrics::Smoothing;

namespace {

const metrics::Group& circuits() {
    return metrics::groups()[3];
}
const metrics::Metric& received() {
    return circuits().metrics[1];
}

// An adapter's circuits, whose counters grow with every reading.
class Driver {
  public:
    explicit Driver(std::size_t rows) : bytes_(replies_.replies[QueryId::vcTable]) {
        channel_.open(O_RDONLY);
        bytes_.resize(rows * size);
        for (std::size_t row = 0; row < rows; ++row) {
            bytes_[row * size] = static_cast<std::uint8_t>(row);
            bytes_[row * size + 1] = static_cast<std::uint8_t>(row >> 8);
        }
    }

    // A quarter of a second later.
    Reading reading(bool all = true) {
        now_ += 250ms;
        for (std::size_t row = 0; row < bytes_.size(); row += size)
            if (++bytes_[row + size - 4] == 0) ++bytes_[row + size - 3];
        metrics::Reader reader(channel_, [this] { return now_; });
        return reader.read({}, [&](const metrics::Group& group) { return all || &group == &circuits(); });
    }
    // The first row goes to the end, so that all stand elsewhere.
    void turn() { std::rotate(bytes_.begin(), bytes_.begin() + size, bytes_.end()); }

  private:
    static constexpr std::ptrdiff_t size = 20;  // of a row
    StoredReplies replies_;
    ByteVector& bytes_;
    DriverChannel channel_;
    Moment now_{std::chrono::hours(1000)};
};

double sum(const std::vector<Rate>& rates) {
    double all = 0;
    for (const Rate& rate : rates)
        if (const double* known = std::get_if<double>(&rate)) all += *known;
    return all;
}

// The median of the rounds. `prepare` is not measured.
void measure(const char* name, int rounds, const std::function<void()>& prepare,
             const std::function<double()>& work) {
    std::vector<double> times;
    double result = 0;
    for (int i = 0; i < rounds; ++i) {
        prepare();
        const auto begin = Clock::now();
        result = work();
        times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - begin).count());
    }
    std::ranges::sort(times);
    fmt::print("{:<50} {:10.1f} us  ({})\n", name, times[times.size() / 2], result);
}

void measureRows(std::size_t rows, int rounds) {
    Driver driver(rows);
    for (const Smoothing smoothing : {Smoothing::none, Smoothing::tenSeconds}) {
        fmt::print("{} rows, {}\n", rows, smoothing == Smoothing::none ? "of two readings" : "smoothed");
        Rates rates(smoothing);
        std::vector<Rate> all;
        Reading reading = driver.reading(false);
        const auto next = [&] { reading = driver.reading(false); };
        const auto add = [&] { rates.add(reading, "", 353'208); };
        const auto bulk = [&] { return rates.rates(circuits(), received(), all), sum(all); };
        for (int i = 0; i < 60; ++i) next(), add(), bulk();
        measure(
            "reading", rounds, [] {}, [&] { return next(), 0.0; });
        measure("only decoding", rounds, next, [&] {
            double total = 0;
            for (std::size_t row = 0; row < rows; ++row)
                total += std::get<std::uint32_t>(reading.value(circuits(), received(), row));
            return total;
        });
        measure("add()", rounds, next, [&] { return add(), 0.0; });
        measure(
            "rates()", rounds, [&] { next(), add(); }, bulk);
        measure(
            "rates(), once more, of the other counter", rounds, [&] { next(), add(), bulk(); },
            [&] { return rates.rates(circuits(), circuits().metrics[2], all), sum(all); });
        measure(
            "rate() of each row", rounds, [&] { next(), add(); },
            [&] {
                for (std::size_t row = 0; row < rows; ++row)
                    all[row] = rates.rate(circuits(), received(), row);
                return sum(all);
            });
        measure(
            "rate() of one row, the first of a tick", rounds, [&] { next(), add(); },
            [&] { return std::get<double>(rates.rate(circuits(), received(), rows / 2)); });
        measure(
            "rate() of one row, then", rounds, [] {},
            [&] { return std::get<double>(rates.rate(circuits(), received(), rows / 2)); });
        measure(
            "rates(), all rows elsewhere", rounds, [&] { driver.turn(), next(), add(); }, bulk);
    }
}

double residentPeak() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss);
}

void measureSeries(std::size_t count) {
    const double before = residentPeak();
    const std::size_t used = mallinfo2().uordblks;
    std::vector<Series> all(count);
    const Moment start{std::chrono::hours(1000)};
    for (Series& series : all)
        for (int k = 0; k < 24 * 3600 * 4; ++k)
            series.add(start + k * Series::slot, start + (k + 1) * Series::slot, static_cast<float>(k));
    const std::size_t more = mallinfo2().uordblks + mallinfo2().hblkhd - used;
    fmt::print("{} series: {} bytes each, {:.0f} KB allocated, {:.0f} KB more resident at the peak\n", count,
               sizeof(Series), static_cast<double>(more) / 1024, residentPeak() - before);
}

void measureHours(int hours) {
    Driver driver(1000);
    Rates rates(Smoothing::tenSeconds);
    std::vector<Series> all(8);
    std::vector<Rate> column;
    Moment before{};
    for (int hour = 0; hour <= hours; ++hour) {
        for (int tick = 0; tick < (hour ? 3600 * 4 : 240); ++tick) {
            const Reading reading = driver.reading();
            rates.add(reading, "", 353'208);
            rates.rates(circuits(), received(), column);
            for (std::size_t i = 0; i < all.size(); ++i)
                if (const double* rate = std::get_if<double>(&column[i]))
                    all[i].add(before, reading.begun(), static_cast<float>(*rate));
            before = reading.begun();
        }
        fmt::print("{} hours: {:.1f} KB allocated, {:.0f} KB resident at the peak\n", hour,
                   static_cast<double>(mallinfo2().uordblks) / 1024, residentPeak());
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::string word = argc > 2 ? argv[1] : "";
    const int count = argc > 2 ? std::stoi(argv[2]) : 0;
    if (word == "rows" && argc == 4)
        measureRows(static_cast<std::size_t>(count), std::stoi(argv[3]));
    else if (word == "series")
        measureSeries(static_cast<std::size_t>(count));
    else if (word == "hours")
        measureHours(count);
    else
        return fmt::print(stderr, "usage: bench_rates rows COUNT ROUNDS | series COUNT | hours COUNT\n"), 2;
    return 0;
}
