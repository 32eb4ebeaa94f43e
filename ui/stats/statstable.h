// Statistics tables, described by data: a column has a label, a sample text that sets its width, and a value
// (statstext.h) that it shows of each row. Rows are reply views.
#pragma once

#include "platform/index.h"
#include "ui/mytable.h"
#include "ui/stats/keyedbaselines.h"
#include "ui/stats/shownbytes.h"
#include "ui/stats/statstext.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <span>
#include <string>

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
    StatsTable(zTable& table, std::span<const StatsColumn<Row>> columns, int rows)
        : myTable(table), columns_(columns) {
        assert(std::ranges::count_if(columns, [](const auto& c) { return c.value.counter; }) <= mostCounters);
        setRows(rows);
        int column = 0;
        for (const StatsColumn<Row>& c : columns) {
            SetCellText({++column, 0}, c.label);
            table.fitColumn(column, {c.label, c.sample, c.otherSample});
        }
    }

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
            SetCellText({column, number}, textOf(c.value, row, baseline, clear));
        }
    }

    // Makes the current values of the row's counters their baselines.
    void countFrom(const Row& row, RowCounters& baselines) const {
        std::size_t counter = 0;
        for (const StatsColumn<Row>& c : columns_)
            if (c.value.counter) baselines[counter++] = c.value.counter(row);
    }

  private:
    std::span<const StatsColumn<Row>> columns_;
};

// A table with a fixed number of rows, each with a name.
template <class Row> class NamedRowsTable : public StatsTable<Row> {
  protected:
    NamedRowsTable(zTable& table, std::span<const StatsColumn<Row>> columns,
                   std::span<const char* const> names, const char* longest)
        : StatsTable<Row>(table, columns, static_cast<int>(names.size())), names_(names) {
        table.fitColumn(0, {longest});
        nameRows();
    }

    // Shows the named rows; call again after empty().
    void nameRows() {
        this->setRows(static_cast<int>(names_.size()));
        int row = 0;
        for (const char* name : names_) this->SetCellText({0, ++row}, name);
    }

  private:
    std::span<const char* const> names_;
};

// A table with as many rows as the driver reports, numbered. The baselines of the counters belong to a key in
// the row, so that they follow a connection when rows come and go. Only visible rows are turned into text.
template <class Row, class Key, class Hash = std::hash<Key>>
class KeyedTable : public StatsTable<Row>,
                   public KeyedBaselines<Key, typename StatsTable<Row>::RowCounters, Hash> {
  public:
    ~KeyedTable() override { this->table().writeOnDemand({}); }

    void empty() {
        rows_ = {};
        shown_.forget();
        StatsTable<Row>::empty();
    }

  protected:
    using KeyOf = Key (*)(const Row&);

    KeyedTable(zTable& table, std::span<const StatsColumn<Row>> columns, KeyOf key, int rows)
        : StatsTable<Row>(table, columns, rows), key_(key) {
        numberRows(rows);
        table.writeOnDemand([this](int number) { write(number); });
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
        rewrite_ = false;
        if (shown) return true;
        if (clear)
            for (const Row row : rows) this->countFrom(row, this->baselines_[key_(row)]);
        shown_.forget(clear || cleared_ ? 0 : rows.size());
        cleared_ = clear;
        numberRows(static_cast<int>(rows.size()));
        this->setRows(static_cast<int>(rows.size()));
        this->table().rowsChanged();
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
        typename StatsTable<Row>::RowCounters baselines{};
        if (const auto found = this->baselines_.find(key_(row)); found != this->baselines_.end())
            baselines = found->second;
        this->writeRow(number, row, baselines, cleared_);
    }

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
    std::size_t digits_ = 0;
    TableView<Row> rows_;
    ShownBytes shown_;  // the rows whose texts are written
};
