// watch PATH...: what the driver reports, again and again.
#include "change/sent.h"
#include "ctl/state.h"
#include "ctl/watched.h"
#include "platform/csv.h"
#include "platform/device.h"
#include "platform/ending.h"
#include "platform/number.h"
#include "platform/safetext.h"
#include "platform/wallclock.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <unistd.h>

using metrics::Group;
using metrics::Metric;
using metrics::Place;
using metrics::Reading;
using Clock = std::chrono::steady_clock;

namespace {

struct Given {
    std::vector<std::string> paths;
    double interval = 1;
    unsigned long count = 0;  // 0: no end
    bool rates = false, smooth = false, csv = false;
};

// ---- values ----

// A field of a line. Values are escaped already.
std::string field(const std::string& name, const std::string& value) {
    return name + '=' + platform::fieldValue(platform::unescaped(value));
}

Printed printed(const metrics::Rate& rate) {
    if (std::holds_alternative<metrics::Unknown>(rate)) return {nullptr, "unknown"};
    const double rounded = std::round(std::get<double>(rate) * 1000) / 1000;
    return {rounded, fmt::format("{}", rounded)};
}

class WatchPrinter : public StatePrinter {
  public:
    WatchPrinter(const std::vector<Watched>& watched, bool rates) : watched_(watched), rates_(rates) {}

    std::string nameOf(const Metric& metric) const override {
        return rates_ && metric.kind == metrics::Kind::counter ? metric.name + std::string("/s")
                                                               : metric.name;
    }
    Printed print(const Reading& reading, const Group& group, const Metric& metric,
                  std::size_t row) const override {
        if (!rates_ || metric.kind != metrics::Kind::counter)
            return StatePrinter::print(reading, group, metric, row);
        return printed(at(reading.place()).rates.rate(group, metric, row));
    }

  protected:
    const std::set<std::string>* namesOf(const Place& place) const override {
        return at(place).whole ? nullptr : &at(place).names;
    }
    std::string line(const std::string& where, const std::string& text) const override {
        return field(where, text);
    }
    // Rows that are watched by themselves are members of an object, by their keys.
    void putRows(const Reading& reading, const Group& group, Tree& tree) const override {
        Tree rows;
        const std::string path = metrics::pathOf(reading.place());
        for (const WatchedRow& row : at(reading.place()).rows) {
            if (row.group != &group) continue;
            Tree values;
            const std::optional<std::size_t> place = reading.find(*row.group, row.key);
            for (const Metric& metric : group.metrics)
                if (row.wants(metric)) {
                    const std::string name = nameOf(metric);
                    values.put(name, leaf(fmt::format("{}.{}.{}.{}", path, group.table, row.key, name),
                                          place ? print(reading, group, metric, *place)
                                                : Printed{nullptr, "unknown"}));
                }
            rows.put(row.key, std::move(values));
        }
        if (!rows.json().empty()) tree.put(group.table, std::move(rows));
    }

  private:
    const Watched& at(const Place& place) const {
        return *std::ranges::find(watched_, place, &Watched::place);
    }

    const std::vector<Watched>& watched_;
    bool rates_;
};

// ---- the driver ----

struct Tick {
    std::chrono::system_clock::time_point time = {};
    std::vector<Reading> readings = {};  // of what is watched; none: the driver is away
    Output trouble = {};                 // the complaint, without values
};

class WatchedDriver {
  public:
    WatchedDriver(Session& session, std::vector<Watched>& watched, bool rates)
        : session_(session), channel_(session.channel()), watched_(watched), rates_(rates) {}

    // Asks for everything once, and waits no longer than a single command would. The first time
    // Failure::notThere for an adapter that the driver does not report.
    Tick tick() {
        const auto limit = std::chrono::duration_cast<Clock::duration>(session_.options().timeout);
        platform::WaitLimit::set(Clock::now() + limit);
        Tick tick{std::chrono::system_clock::now()};
        if (const auto away = meet()) {
            tick.trouble.status = away->status();
            tick.trouble.message = away->what();
        } else {
            read(tick);
        }
        first_ = false;
        return tick;
    }

  private:
    // The driver is there, and has said who it is; or why not.
    std::optional<Failure> meet() {
        const bool open = channel_.alive();
        if (open && met_) return {};
        met_ = false;
        if (!open && !session_.openDriver(O_RDONLY)) return session_.noDriver();
        ++openings_;
        aalInfo query(channel_, 0);
        const Discovery found = discoverAdapters(query, session_.devices);
        if (!found.complete) return session_.noDriver();
        if (first_ && saysAdapters(found, channel_)) {
            std::vector<Place> places;
            for (const Watched& watched : watched_) places.push_back(watched.place);
            requireReported(found, places);
        }
        for (const FoundAdapter& adapter : found.adapters)
            identities_[adapter.index] = driverIdentity(found.version, adapter.line);
        met_ = true;
        return {};
    }

    // Whose counters the next requests read.
    std::string driverOf(int adapter) {
        const DriverIdentity& known = identities_[adapter];
        return fmt::format("{} {} {} {} {} {}", openings_, channel_.reopenings(), known.boot, known.device,
                           known.revision, known.mac);
    }

    void read(Tick& tick) {
        std::map<int, std::string> drivers;
        for (const Watched& watched : watched_)
            drivers[watched.place.adapter] = driverOf(watched.place.adapter);
        metrics::Reader reader(channel_);
        std::map<int, double> limits;
        if (rates_)
            for (const auto& [adapter, driver] : drivers)
                limits[adapter] =
                    metrics::linkLimit(reader.read({.adapter = adapter}, [](const Group& group) {
                        return group.query == QueryId::suniStats;
                    }));
        for (Watched& watched : watched_) {
            const int adapter = watched.place.adapter;
            Reading reading =
                reader.read(watched.place, [&](const Group& group) { return watched.wants(group); });
            if (rates_) watched.rates.add(reading, drivers[adapter], limits[adapter]);
            tick.readings.push_back(std::move(reading));
        }
        complain(reader.owed(), tick.trouble);
    }

    Session& session_;
    DriverChannel& channel_;
    std::vector<Watched>& watched_;
    bool rates_;
    bool first_ = true, met_ = false;
    unsigned long openings_ = 0;
    std::map<int, DriverIdentity> identities_;  // by adapter
};

// ---- lines ----

class Form {
  public:
    Form() = default;
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    virtual std::string header() const { return {}; }
    virtual std::string lines(const Tick& tick) const = 0;
};

class TextForm : public Form {
  public:
    explicit TextForm(const WatchPrinter& printer) : printer_(printer) {}

    std::string lines(const Tick& tick) const override {
        std::string line = platform::inUtc(tick.time);
        if (!tick.trouble.message.empty()) line += ' ' + field("error", tick.trouble.message);
        const Tree values = printer_.tree(tick.readings);
        for (const std::string& value : values.lines()) line += ' ' + value;
        return line + '\n';
    }

  private:
    const WatchPrinter& printer_;
};

class JsonForm : public Form {
  public:
    explicit JsonForm(const WatchPrinter& printer) : printer_(printer) {}

    std::string lines(const Tick& tick) const override {
        Output output = tick.trouble;
        output.tree = printer_.tree(tick.readings);
        return jsonLine(output, {{"time", platform::inUtc(tick.time)}});
    }

  private:
    const WatchPrinter& printer_;
};

// A column for each value, and a record for each tick; of one table alone a record for each row.
class CsvForm : public Form {
  public:
    CsvForm(const WatchPrinter& printer, const std::vector<Watched>& watched) : printer_(printer) {
        for (std::size_t i = 0; i < watched.size(); ++i) {
            const std::string path = metrics::pathOf(watched[i].place) + '.';
            for (const Group& group : metrics::groupsOf(watched[i].place.service)) {
                const bool table = group.isTable() && watched[i].names.contains(group.table);
                for (const Metric& metric : group.metrics)
                    if (table || (!group.isTable() && watched[i].names.contains(metric.name)))
                        columns_.push_back({i, table ? "" : path, group, metric});
            }
            for (const WatchedRow& row : watched[i].rows)
                for (const Metric& metric : row.group->metrics)
                    if (row.wants(metric))
                        columns_.push_back({i, fmt::format("{}{}.{}.", path, row.group->table, row.key),
                                            *row.group, metric, &row});
        }
    }

    std::string header() const override {
        std::vector<std::string> names{"time", "error"};
        for (const Column& column : columns_) names.push_back(column.path + printer_.nameOf(column.metric));
        return platform::csvRecord(names);
    }

    std::string lines(const Tick& tick) const override {
        std::string all;
        const std::size_t rows = rowsOf(tick);
        for (std::size_t row = 0; row < std::max<std::size_t>(rows, 1); ++row) {
            std::vector<std::string> values{platform::inUtc(tick.time), tick.trouble.message};
            for (const Column& column : columns_)
                values.push_back(rows == 0 ? "" : valueOf(tick.readings[column.reading], column, row));
            all += platform::csvRecord(values);
        }
        return all;
    }

  private:
    struct Column {
        std::size_t reading;  // its place in a tick
        std::string path;     // before the name; none: of all rows
        const Group& group;
        const Metric& metric;
        const WatchedRow* row = nullptr;
    };

    // 0: nothing is known, or the table has no rows.
    std::size_t rowsOf(const Tick& tick) const {
        if (tick.readings.empty()) return 0;
        const Column& first = columns_.front();
        const Reading& reading = tick.readings[first.reading];
        if (!first.path.empty()) return 1;
        return reading.missing(first.group) ? 0 : reading.rows(first.group);
    }

    std::string valueOf(const Reading& reading, const Column& column, std::size_t row) const {
        const std::optional<std::size_t> found =
            column.row ? reading.find(*column.row->group, column.row->key) : row;
        if (!found) return "";
        const Printed value = printer_.print(reading, column.group, column.metric, *found);
        return value.json.is_null() ? "" : value.text;
    }

    const WatchPrinter& printer_;
    std::vector<Column> columns_;
};

// Columns must be known before the driver is asked, so whole services are taken without their tables.
void prepareForCsv(std::vector<Watched>& all) {
    for (Watched& watched : all) {
        if (!watched.whole) continue;
        watched.whole = false;
        for (const Group& group : metrics::groupsOf(watched.place.service))
            if (!group.isTable())
                for (const Metric& metric : group.metrics) watched.names.insert(metric.name);
    }
    const bool alone = all.size() == 1 && all.front().names.size() == 1 && all.front().rows.empty();
    if (!alone && std::ranges::any_of(all, &Watched::hasTable))
        throw Failure(Status::usage, "with --csv a table can only be watched alone");
}

std::unique_ptr<Form> formOf(const WatchPrinter& printer, const std::vector<Watched>& watched, bool json,
                             bool csv) {
    if (csv) return std::make_unique<CsvForm>(printer, watched);
    if (json) return std::make_unique<JsonForm>(printer);
    return std::make_unique<TextForm>(printer);
}

// False: nobody reads it, or the end has been asked for. Failure::notDone.
bool write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (platform::endAsked() || (written < 0 && errno == EPIPE)) return false;
        if (written < 0 && errno != EINTR) throw Failure(Status::notDone, "the output cannot be written");
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// ---- the command ----

std::string isCount(const std::string& text) {
    const auto count = platform::wholeNumber<unsigned long>(text);
    return count && *count > 0 ? "" : fmt::format("{} is no number from 1 on", text);
}

// Waits for the next tick. Ticks that the work before has made late are left out, so that all have whole
// intervals between them.
class Pace {
  public:
    explicit Pace(double interval)
        : interval_(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval))) {}

    bool next() const {
        const auto passed = (Clock::now() - begin_) / interval_;
        return platform::waitUnlessEnded(begin_ + (passed + 1) * interval_, STDOUT_FILENO);
    }

  private:
    Clock::duration interval_;
    Clock::time_point begin_ = Clock::now();
};

Output run(Session& session, const Given& given) {
    const bool json = session.options().json;
    if (json && given.csv) throw Failure(Status::usage, "--csv and --json exclude each other");
    const bool rates = given.rates || given.smooth;
    std::vector<Watched> watched = readWatched(given.paths);
    if (given.csv) prepareForCsv(watched);
    if (given.smooth)
        for (Watched& each : watched) each.rates.smooth(metrics::Smoothing::tenSeconds);
    const WatchPrinter printer(watched, rates);
    const std::unique_ptr<Form> form = formOf(printer, watched, json, given.csv);
    WatchedDriver driver(session, watched, rates);

    platform::watchEndSignals();
    Output done{.printed = true};
    const Pace pace(given.interval);
    // Rates need something to compare with.
    if (rates && (driver.tick(), !pace.next())) return done;
    std::string header = form->header();
    for (unsigned long number = 1; !platform::endAsked(); ++number) {
        const Tick tick = driver.tick();
        if (platform::endAsked() || !write(header + form->lines(tick))) break;
        header.clear();
        if (number == given.count || !pace.next()) break;
    }
    return done;
}

}  // namespace

Run addWatch(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command
        .add_option("PATH.NAME", given->paths,
                    "adapter1, adapter1/lec2: all of it; with a NAME: one value or table; "
                    "adapter1.circuits.33.rxFrames: of the row with this key")
        ->required();
    command.add_option("--interval", given->interval, "Seconds between two lines, from 0.25 (1)")
        ->check(secondsFrom(0.25));
    command.add_option("--count", given->count, "End after so many lines")
        ->check(CLI::Validator(isCount, "NUMBER"));
    command.add_flag("--rates", given->rates, "How fast counters grow, per second, in place of their values");
    command.add_flag("--smooth", given->smooth, "Rates of the last ten seconds");
    command.add_flag("--csv", given->csv, "Comma-separated values with a header");
    return [given](Session& session) { return run(session, *given); };
}
