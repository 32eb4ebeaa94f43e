// What "watch" was asked to watch: services, their values and tables, and rows of tables by their keys.
//
//     adapter1/lec2                       all of it
//     adapter1/lec2.mtu                   a value
//     adapter1/lec2.connections           a table
//     adapter1/lec2.connections.33        the row with that VCI
//     adapter1/lec2.connections.33.vci    a value of it
#pragma once

#include "metrics/rates.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

struct WatchedRow {
    const metrics::Group* group;
    std::string key;
    std::set<std::string> names = {};  // of columns; none: all

    bool wants(const metrics::Metric& metric) const { return names.empty() || names.contains(metric.name); }
};

struct Watched {
    metrics::Place place;
    bool whole = false;
    std::set<std::string> names = {};   // of values and tables, unless it is whole
    std::vector<WatchedRow> rows = {};  // of other tables
    metrics::Rates rates = metrics::Rates();

    bool wants(const metrics::Group& group) const;
    bool hasTable() const;  // with all of its rows
};

// Each place once. Failure::usage for what cannot be watched.
std::vector<Watched> readWatched(const std::vector<std::string>& paths);
