#include "platform/csv.h"

namespace platform {

namespace {

void append(std::string& line, const std::string& field) {
    if (field.find_first_of(",\"\r\n") == field.npos) {
        line += field;
        return;
    }
    line += '"';
    for (const char c : field) line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

}  // namespace

std::string csvRecord(std::span<const std::string> fields) {
    std::string line;
    for (const std::string& field : fields) {
        if (&field != &fields.front()) line += ',';
        append(line, field);
    }
    // An empty line would be no record.
    if (fields.size() == 1 && line.empty()) line = "\"\"";
    return line + "\r\n";
}

}  // namespace platform
