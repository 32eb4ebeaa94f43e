// Statistics tables, described by data: a column has a label, a sample text that sets its width, and a value
// (statstext.h) that it shows of each row. Rows are reply views.
#pragma once

#include "platform/index.h"
#include "ui/mytable.h"
#include "ui/stats/baselines.h"
#include "ui/stats/keyedbaselines.h"
#include "ui/stats/rated.h"
#include "ui/stats/shownbytes.h"
#include "ui/stats/statstext.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

constexpr const char* vciSample = "  0/65535";
constexpr const char* signedVciSample = "  0/-32768";
constexpr const char* counterSample = "4294967295";
constexpr const char* macSample = "00:00:00:00:00:00";
constexpr const char* prefixSample = "00:00:00:00:00:00:00:00:00:00:00:00:00";
constexpr const char* esiSample = "00:00:00:00:00:00-00";

template <class Row> struct StatsColumn {
    const char* label;
    const char* sample;
    StatsValue<Row> value;
    const char* otherSample = "";  // a second candidate for the widest text
};

template <class Row> class StatsTable : public myTable {
  public:
    static constexpr int mostCounters = 4;
    using RowCounters = std::array<std::uint32_t, mostCounters>;  // by counter column

    // Removes all rows.
    void empty() { setRows(0); }

  protected:
    // `values`: the table of named values that counters are read from; null when all have a function.
    StatsTable(zTable& table, std::span<const StatsColumn<Row>> columns, int rows,
               const metrics::Group* values = nullptr)
        : myTable(table), columns_(columns), group_(values) {
        assert(std::ranges::count_if(columns, [](const auto& c) { return c.value.counter; }) <= mostCounters);
        setRows(rows);
        for (const StatsColumn<Row>& c : columns) metrics_.push_back(metricOf(c.value));
        labelColumns(false);
    }

    void labelColumns(bool rates) {
        int column = 0;
        for (const StatsColumn<Row>& c : columns_) {
            const std::string label = rates && c.value.counter ? perSecond(c.label) : c.label;
            SetCellText({++column, 0}, label);
            table().fitColumn(column, {label, c.sample, c.otherSample});
        }
    }

    // Of a counter in a column, from 1; null: it is no counter, or has another name in each row.
    const metrics::Metric* metricIn(int column) const { return metrics_[asIndex(column) - 1]; }
    const metrics::Group& group() const { return *group_; }
    std::span<const StatsColumn<Row>> columnTable() const { return columns_; }

    void setRows(int rows) { resize(static_cast<int>(columns_.size()), rows); }

    // Writes one row, the cells of counters only if asked to.
    void writeRow(int number, const Row& row, RowCounters& baselines, bool clear, bool withCounters = true) {
        std::size_t counter = 0;
        std::uint32_t none = 0;
        int column = 0;
        for (const StatsColumn<Row>& c : columns_) {
            ++column;
            std::uint32_t& baseline = c.value.counter ? baselines[counter++] : none;
            if (c.value.counter && !withCounters) continue;
            SetCellText({column, number}, textOf(c.value, metricIn(column), row, baseline, clear));
        }
    }

    const StatsValue<Row>& valueOf(int column) const { return columns_[asIndex(column) - 1].value; }

    // The place of its counter among the row's counters.
    std::size_t counterOf(int column) const {
        const auto before = columns_.first(asIndex(column) - 1);
        return asIndex(std::ranges::count_if(before, [](const auto& c) { return c.value.counter; }));
    }

    // Makes the current values of the row's counters their baselines.
    void countFrom(const Row& row, RowCounters& baselines) const {
        std::size_t counter = 0;
        int column = 0;
        for (const StatsColumn<Row>& c : columns_)
            if (++column, c.value.counter) baselines[counter++] = countIn(c.value, metricIn(column), row);
    }

  private:
    const metrics::Metric* metricOf(const StatsValue<Row>& value) const {
        if (!value.counter || value.read) return nullptr;
        const auto found =
            std::ranges::find(group_->metrics, std::string_view(value.counter), &metrics::Metric::name);
        assert(found != group_->metrics.end());
        return &*found;
    }

    std::span<const StatsColumn<Row>> columns_;
    const metrics::Group* group_;
    std::vector<const metrics::Metric*> metrics_;  // by column
};

// A row of a table with named rows, and how the named values of its counters begin: "multicastSend" of
// "multicastSendTxPackets".
struct StatsRowName {
    const char *label, *values;
};

// A table with a fixed number of rows, each with a name. Set is the set of all baselines.
template <class Row, class Set>
class NamedRowsTable : public StatsTable<Row>, public Baselines<Set>, public Rated {
  public:
    void showRates(bool on) override {
        rates_ = on;
        this->labelColumns(on);
        forEachCounter([&](zTableLoc cell, const std::string&) {
            if (cell.row <= this->table().model().rows()) this->SetCellText(cell, "");
        });
        this->rewrite();
    }

    // A row that shows nothing has no rates.
    void write(const metrics::Rates* rates) override {
        if (!rates) return;
        forEachCounter([&](zTableLoc cell, const std::string& name) {
            if (cell.row > this->table().model().rows() || this->table().text({1, cell.row}).empty()) return;
            const metrics::Subject counter = metrics::subjectOf({service_}, "", name);
            this->SetCellText(cell, rateText(rates->rate(*counter.group, *counter.metric)));
        });
    }

    std::optional<metrics::Subject> counted(const zControl& control,
                                            const metrics::Place& place) const override {
        std::optional<metrics::Subject> subject;
        if (&control != &this->table()) return {};
        forEachCounter([&](zTableLoc cell, const std::string& name) {
            if (cell == this->activeCell()) subject = metrics::subjectOf(place, "", name);
        });
        return subject;
    }

  protected:
    NamedRowsTable(zTable& table, std::span<const StatsColumn<Row>> columns, metrics::Service service,
                   std::span<const StatsRowName> names, const char* longest)
        : StatsTable<Row>(table, columns, static_cast<int>(names.size())), service_(service), names_(names) {
        table.fitColumn(0, {longest});
        nameRows();
    }

    // Writes a row, without its counters while rates are shown, or if it is asked to.
    void writeNamedRow(int number, const Row& row, typename StatsTable<Row>::RowCounters& baselines,
                       bool clear, bool withCounters = true) {
        if (clear && withCounters) this->countFrom(row, baselines);
        this->writeRow(number, row, baselines, false, withCounters && !rates_);
    }

    // Shows the named rows; call again after empty().
    void nameRows() {
        this->setRows(static_cast<int>(names_.size()));
        int row = 0;
        for (const StatsRowName& name : names_) this->SetCellText({0, ++row}, name.label);
    }

  private:
    template <class Visit> void forEachCounter(const Visit& visit) const {
        for (int row = 1; row <= static_cast<int>(names_.size()); ++row) {
            int column = 0;
            for (const StatsColumn<Row>& c : this->columnTable())
                if (++column, c.value.counter)
                    visit(zTableLoc{column, row},
                          names_[asIndex(row) - 1].values + std::string(c.value.counter));
        }
    }

    metrics::Service service_;
    std::span<const StatsRowName> names_;
    bool rates_ = false;
};

// A table with as many rows as the driver reports, numbered. The baselines of the counters belong to a key in
// the row, so that they follow a connection when rows come and go, and so does the active cell. Only visible
// rows are turned into text.
template <class Row, class Key, class Hash = std::hash<Key>>
class KeyedTable : public StatsTable<Row>,
                   public KeyedBaselines<Key, typename StatsTable<Row>::RowCounters, Hash>,
                   public Rated {
  public:
    ~KeyedTable() override {
        this->table().writeOnDemand({});
        this->table().readUnwritten({});
        this->table().sortable({});
        this->table().nameRows({});
    }

    void empty() {
        rows_ = {};
        shown_.forget();
        StatsTable<Row>::empty();
    }

    void showRates(bool on) override {
        ratesShown_ = on;
        rates_ = nullptr;
        sortedRate_ = nullptr;
        this->labelColumns(on);
        rewrite();
        if (rows_.size() > 0) this->table().rowsChanged();
    }

    // Rows that are new have to be written with or without rates.
    void write(const metrics::Rates* rates) override {
        if (!rates && !filled_) return;
        filled_ = false;
        rates_ = rates;
        sortedRate_ = nullptr;
        shown_.forget();
        this->table().rowsChanged();
    }

    std::optional<metrics::Subject> counted(const zControl& control,
                                            const metrics::Place& place) const override {
        const zTableLoc cell = this->activeCell();
        if (&control != &this->table() || cell.row < 1 || asIndex(cell.row) > rows_.size()) return {};
        const metrics::Metric* metric = this->metricIn(cell.column);
        if (!metric) return {};
        return metrics::Subject{place, &this->group(), metric,
                                metrics::keyIn(this->group(), rows_[asIndex(cell.row) - 1].bytes())};
    }

  protected:
    using KeyOf = Key (*)(const Row&);

    KeyedTable(zTable& table, std::span<const StatsColumn<Row>> columns, const metrics::Group& values,
               KeyOf key, int rows)
        : StatsTable<Row>(table, columns, rows, &values), key_(key) {
        numberRows(rows);
        table.writeOnDemand([this](int number) { write(number); });
        table.readUnwritten([this](zTableLoc cell) { return read(cell); });
        table.sortable([this](zTableLoc cell) { return sortKey(cell); });
        table.nameRows([this](int number) { return nameOf(key_(rows_[asIndex(number) - 1])); });
    }

    // Fetches the table and shows its rows. Those out of sight are read from the query's reply later: until
    // the next call it must fetch no other table. False when there are no rows; what is shown then stays as
    // it is. `group`: see KeyedBaselines.
    template <class Query> bool fill(Query& query, bool clear, int group = 0) {
        const TableView<Row> rows = query.GetEntireTable();
        if (!clear && query.result() == 0 && !this->baselines_.empty())
            this->noteRows(rows, key_, group, std::chrono::steady_clock::now());
        if (rows.size() == 0) return false;
        const bool same = query.sameTable();
        const bool shown = same && rows_.size() == rows.size() && !clear && !cleared_ && !rewrite_;
        rows_ = rows;
        rates_ = nullptr;
        rewrite_ = false;
        if (shown) return true;
        if (clear)
            for (const Row row : rows) this->countFrom(row, this->baselines_[key_(row)]);
        shown_.forget(clear || cleared_ ? 0 : rows.size());
        cleared_ = clear;
        numberRows(static_cast<int>(rows.size()));
        this->setRows(static_cast<int>(rows.size()));
        filled_ = ratesShown_;
        if (!ratesShown_) this->table().rowsChanged();  // else in write()
        return true;
    }

  private:
    void rewrite() override {
        shown_.forget();
        rewrite_ = true;
    }

    void write(int number) {
        const Row row = rows_[asIndex(number) - 1];
        if (!row || !shown_.update(asIndex(number) - 1, row.bytes())) return;
        typename StatsTable<Row>::RowCounters baselines = baselinesOf(row);
        this->writeRow(number, row, baselines, cleared_, !ratesShown_);
        if (ratesShown_) writeRates(number);
    }

    void writeRates(int number) {
        for (int column = 1; column <= static_cast<int>(this->columnTable().size()); ++column)
            if (const metrics::Metric* metric = this->metricIn(column))
                this->SetCellText({column, number}, rateText(rateOf(*metric, number)));
    }

    // A cell as write() would write it.
    std::string read(zTableLoc cell) const {
        const Row row = rows_[asIndex(cell.row) - 1];
        if (!row) return {};
        if (const metrics::Metric* metric = ratesShown_ ? this->metricIn(cell.column) : nullptr)
            return std::string(rateText(rateOf(*metric, cell.row)));
        const StatsValue<Row>& value = this->valueOf(cell.column);
        return value.counter ? std::to_string(growthIn(cell.column, row)) : std::string(value.text(row));
    }

    // Of a counter.
    std::int64_t growthIn(int column, const Row& row) const {
        const StatsValue<Row>& value = this->valueOf(column);
        if (cleared_) return 0;
        const std::uint32_t baseline =
            this->baselines_.empty() ? 0 : baselinesOf(row)[this->counterOf(column)];
        return growthOf(value, countIn(value, this->metricIn(column), row), baseline);
    }

    typename StatsTable<Row>::RowCounters baselinesOf(const Row& row) const {
        const auto found = this->baselines_.find(key_(row));
        return found == this->baselines_.end() ? typename StatsTable<Row>::RowCounters{} : found->second;
    }

    metrics::Rate rateOf(const metrics::Metric& metric, int number) const {
        if (!rates_) return metrics::Unknown::noneBefore;
        return rates_->rate(this->group(), metric, asIndex(number) - 1);
    }

    // Thousandths are enough to tell rates apart.
    zSortKey rateKey(zTableLoc cell, const metrics::Metric& metric) {
        if (!rates_) return {};
        if (std::exchange(sortedRate_, &metric) != &metric) rates_->rates(this->group(), metric, sortRates_);
        const auto number = asIndex(cell.row) - 1;
        const double* rate = number < sortRates_.size() ? std::get_if<double>(&sortRates_[number]) : nullptr;
        return rate ? zNumberKey(std::llround(*rate * 1000)) : zSortKey();
    }

    // As write() shows it.
    zSortKey sortKey(zTableLoc cell) {
        if (const metrics::Metric* metric = ratesShown_ ? this->metricIn(cell.column) : nullptr)
            return rateKey(cell, *metric);
        const Row row = rows_[asIndex(cell.row) - 1];
        const StatsValue<Row>& value = this->valueOf(cell.column);
        return value.counter ? zNumberKey(growthIn(cell.column, row)) : keyOf(value, row);
    }

    static zSortKey nameOf(std::integral auto key) { return zNumberKey(key); }
    static zSortKey nameOf(const macAddress& key) { return zBytesKey(key.bytes()); }

    // Makes room for the largest row number, at least two digits.
    void numberRows(int rows) {
        const std::string last = std::to_string(std::max(rows, 10));
        if (last.size() == digits_) return;
        digits_ = last.size();
        this->setRowNumbers(std::string(digits_, '9').c_str());
    }

    KeyOf key_;
    bool cleared_ = false;  // all counters show 0 until the next fill(), also those of rows that share a key
    bool rewrite_ = false;  // at the next fill(), be the rows the same
    bool ratesShown_ = false;
    bool filled_ = false;                          // and the table has not been told of the rows
    const metrics::Rates* rates_ = nullptr;        // of the rows; null: not yet
    std::vector<metrics::Rate> sortRates_;         // of all rows, by which they are sorted
    const metrics::Metric* sortedRate_ = nullptr;  // what they are of; null: of nothing any more
    std::size_t digits_ = 0;
    TableView<Row> rows_;
    ShownBytes shown_;  // the rows whose texts are written
};
