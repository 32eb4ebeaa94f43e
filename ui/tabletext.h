// A table as the text of a file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct TableCells {
    std::vector<std::string> labels;             // of the columns
    std::vector<std::vector<std::string>> rows;  // each with a cell for each column
};

// In these two the cells have no blanks around their texts, which align them on the screen.

// Comma-separated values as RFC 4180 has them: a header, lines that end with CR and LF, double quotes around
// what needs them.
std::string asCsv(const TableCells& cells);

// {"columns":[...],"rows":[[...],...]}. The cells of a column that has decimal numbers alone are numbers,
// empty ones null; all others are texts. Bytes that are no UTF-8 become U+FFFD.
std::string asJson(const TableCells& cells);

// Tabs between the cells, which are as they are shown.
std::string asText(const TableCells& cells);

// By the name's end: ".csv", ".json", in whatever case; anything else is text.
std::string tableText(const TableCells& cells, std::string_view fileName);
