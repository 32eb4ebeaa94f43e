// The table of queries of the driver's state. One row per query.
#pragma once

#include <cstdint>

enum class QueryId {
    vcTable,
    lecState,
    lecStats,
    lecTable,
    lesState,
    lesStats,
    lesTable,
    lecsState,
    lecsStats,
    lecsTable,
    linkState,
    ipState,
    ipStats,
    ipTable,
    ipPvcTable,
    boardState,
    boardMacAddress,
    aalStats,
    suniStats,
    packageRev,
    count  // of the queries
};

struct Query {
    QueryId id;
    std::uint16_t prim;  // header fields that select the query
    std::uint16_t type;
    std::uint16_t size;       // bytes of reply data; of a table, bytes of a row
    std::uint16_t chunkRows;  // of a table: the most rows that one request asks for; else 0
    std::uint16_t countType;  // of a table: the Type that asks for its row count; else 0
    const char* trace;        // line on the debug log before the request
};

const Query& queryOf(QueryId id);
