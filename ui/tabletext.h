// A table as the text of a file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct TableCells {
    std::vector<std::string> labels;             // of the columns
    std::vector<std::vector<std::string>> rows;  // each with a cell for each column
};

// Comma-separated values as RFC 4180 has them: a header, lines that end with CR and LF, double quotes around
// what needs them.
std::string asCsv(const TableCells& cells);

// {"columns":[...],"rows":[[...],...]}, all of them texts as they are shown. Bytes that are no UTF-8 become
// U+FFFD.
std::string asJson(const TableCells& cells);

// Tabs between the cells.
std::string asText(const TableCells& cells);

// By the name's end: ".csv", ".json", in whatever case; anything else is text.
std::string tableText(const TableCells& cells, std::string_view fileName);
