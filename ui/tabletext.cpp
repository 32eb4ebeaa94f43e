#include "ui/tabletext.h"

#include "platform/csv.h"

#include <fmt/ranges.h>
#include <nlohmann/json.hpp>
#include <strings.h>

namespace {

using Json = nlohmann::ordered_json;
using Line = std::vector<std::string>;

std::string tabbed(const Line& line) {
    return fmt::format("{}\n", fmt::join(line, "\t"));
}

bool endsWith(std::string_view name, std::string_view end) {
    return name.size() > end.size() &&
           ::strncasecmp(name.data() + name.size() - end.size(), end.data(), end.size()) == 0;
}

// Without what aligns texts in their cells.
Line trimmed(const Line& line) {
    Line texts;
    for (const std::string& text : line) {
        const std::size_t first = text.find_first_not_of(' ');
        texts.push_back(first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first));
    }
    return texts;
}

bool isNumber(const std::string& text) {
    constexpr std::size_t digits = 15;  // that any reader keeps
    return text.size() <= digits && text.find_first_not_of("-.0123456789") == text.npos && Json::accept(text);
}

// A column of numbers alone, except for empty cells.
void makeNumbers(Json& rows, std::size_t column) {
    bool some = false;
    for (const Json& row : rows) {
        const auto& text = row[column].get_ref<const std::string&>();
        if (!text.empty() && !isNumber(text)) return;
        some = some || !text.empty();
    }
    if (!some) return;
    for (Json& row : rows) {
        const auto text = row[column].get<std::string>();
        row[column] = text.empty() ? Json() : Json::parse(text);
    }
}

}  // namespace

std::string asCsv(const TableCells& cells) {
    std::string text = platform::csvRecord(trimmed(cells.labels));
    for (const Line& row : cells.rows) text += platform::csvRecord(trimmed(row));
    return text;
}

std::string asJson(const TableCells& cells) {
    Json rows = Json::array();
    for (const Line& row : cells.rows) rows.push_back(trimmed(row));
    for (std::size_t column = 0; column < cells.labels.size(); ++column) makeNumbers(rows, column);
    const Json json{{"columns", trimmed(cells.labels)}, {"rows", rows}};
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
