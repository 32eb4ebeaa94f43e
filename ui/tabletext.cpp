#include "ui/tabletext.h"

#include "platform/csv.h"

#include <fmt/ranges.h>
#include <nlohmann/json.hpp>
#include <strings.h>

namespace {

using Line = std::vector<std::string>;

std::string tabbed(const Line& line) {
    return fmt::format("{}\n", fmt::join(line, "\t"));
}

bool endsWith(std::string_view name, std::string_view end) {
    return name.size() > end.size() &&
           ::strncasecmp(name.data() + name.size() - end.size(), end.data(), end.size()) == 0;
}

}  // namespace

std::string asCsv(const TableCells& cells) {
    std::string text = platform::csvRecord(cells.labels);
    for (const Line& row : cells.rows) text += platform::csvRecord(row);
    return text;
}

std::string asJson(const TableCells& cells) {
    using Json = nlohmann::ordered_json;
    const Json json{{"columns", cells.labels}, {"rows", cells.rows}};
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string asText(const TableCells& cells) {
    std::string text = tabbed(cells.labels);
    for (const Line& row : cells.rows) text += tabbed(row);
    return text;
}

std::string tableText(const TableCells& cells, std::string_view fileName) {
    return endsWith(fileName, ".csv")    ? asCsv(cells)
           : endsWith(fileName, ".json") ? asJson(cells)
                                         : asText(cells);
}
