#include "ui/tabletext.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <strings.h>

namespace {

using Line = std::vector<std::string>;

std::string quoted(const std::string& cell) {
    if (cell.find_first_of(",\"\r\n") == cell.npos) return cell;
    std::string text = "\"";
    for (const char c : cell) text.append(c == '"' ? 2 : 1, c);
    return text + '"';
}

void append(std::string& text, const Line& line, char separator, std::string (*form)(const std::string&)) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i > 0) text += separator;
        text += form(line[i]);
    }
}

std::string asItIs(const std::string& cell) {
    return cell;
}

bool endsWith(std::string_view name, std::string_view end) {
    return name.size() > end.size() &&
           ::strncasecmp(name.data() + name.size() - end.size(), end.data(), end.size()) == 0;
}

}  // namespace

std::string asCsv(const TableCells& cells) {
    std::string text;
    append(text, cells.labels, ',', quoted);
    text += "\r\n";
    for (const Line& row : cells.rows) {
        // An empty line would be no record.
        if (row.size() == 1 && row[0].empty())
            text += "\"\"";
        else
            append(text, row, ',', quoted);
        text += "\r\n";
    }
    return text;
}

std::string asJson(const TableCells& cells) {
    using Json = nlohmann::ordered_json;
    const Json json{{"columns", cells.labels}, {"rows", cells.rows}};
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string asText(const TableCells& cells) {
    std::string text;
    append(text, cells.labels, '\t', asItIs);
    text += '\n';
    for (const Line& row : cells.rows) {
        append(text, row, '\t', asItIs);
        text += '\n';
    }
    return text;
}

std::string tableText(const TableCells& cells, std::string_view fileName) {
    return endsWith(fileName, ".csv")    ? asCsv(cells)
           : endsWith(fileName, ".json") ? asJson(cells)
                                         : asText(cells);
}
