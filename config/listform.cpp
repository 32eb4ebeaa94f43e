#include "config/listform.h"

#include "config/listlines.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fmt/format.h>
#include <limits>
#include <utility>

using namespace listlines;

namespace {

constexpr std::string_view recordBegin = "[PVC";

// So many characters are a client, whatever blanks are between them.
constexpr std::size_t clientLength = std::string_view("00a03e000001/00").size();
bool isSpace(char c) {
    return std::string_view(" \t\r\n\v\f").find(c) != std::string_view::npos;
}

using IsAddress = bool (*)(std::string_view text);

constexpr std::array<std::string_view, 5> writtenComments{
    "VC index", "Format:  0000778899aa=MAC 123.123.123.123=IP", "0=Null 1=LLC",
    "For Bridged PVC only; 1=Broadcast 0=Non-Broadcast", "MB/s"};
constexpr std::array<std::string_view, 5> keys{"VC", "Addr", "Encap", "Bcast", "Rate"};

void drop(ListForm& form, std::string what) {
    if (std::ranges::find(form.dropped, what) == form.dropped.end()) form.dropped.push_back(std::move(what));
}

bool isComment(std::string_view line) {
    return trimmed(line).starts_with('#');
}

bool onlyComments(std::string_view text) {
    TextLines lines(text);
    bool comments = true;
    for (bool more = true; more && comments;) {
        std::string_view line;
        more = lines.next(line);
        comments = trimmed(line).empty() || isComment(line);
    }
    return comments;
}

// Of a line that is too long only the beginning is read: a comment that is cut there passes for the beginning
// of one that the program writes.
void lookAtComment(std::string_view line, std::size_t hash, ListForm& form) {
    if (hash == std::string_view::npos) return;
    const std::string_view comment = trimmed(line.substr(hash + 1));
    const bool cut = line.size() >= lineLimit;
    const auto isWritten = [&](std::string_view written) {
        return cut ? written.starts_with(comment) : written == comment;
    };
    if (!comment.empty() && std::ranges::none_of(writtenComments, isWritten)) drop(form, "a comment");
}

// A number that is read as it stands. VCIs may be written as signed 16-bit numbers, too.
bool isNumber(std::string_view text, bool vci) {
    std::int32_t number = 0;
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() &&
           (!vci || (number >= std::numeric_limits<std::int16_t>::min() &&
                     number <= std::numeric_limits<std::uint16_t>::max()));
}

struct Kind {
    IsAddress own, foreign;
};

// The PVC record that is being looked at.
struct RecordPlace {
    std::size_t number;  // from 1
    unsigned seen = 0;   // a bit for each key that it had so far
};

void dropValue(ListForm& form, const RecordPlace& record, const char* fault) {
    drop(form, fmt::format("a value in record {} that is {}", record.number, fault));
    form.faults.push_back({record.number - 1, fault});
}

void lookAtValue(std::string_view key, std::string_view value, const Kind& kind, const RecordPlace& record,
                 ListForm& form) {
    if (value.empty()) return;
    if (value.find_first_of(" \t") != std::string_view::npos)
        drop(form, "text after a value");
    else if (key != "Addr" && !isNumber(value, key == "VC"))
        dropValue(form, record, "no number of its kind");
    else if (key == "Addr" && kind.foreign(value))
        form.isList = false;
    else if (key == "Addr" && !kind.own(value))
        dropValue(form, record, "no address of its kind");
}

void lookAtRecordLine(std::string_view line, const Kind& kind, RecordPlace& record, ListForm& form) {
    const std::size_t hash = line.find('#');
    const std::string_view text = trimmed(line.substr(0, hash));
    lookAtComment(line, hash, form);
    const std::size_t equals = text.find('=');
    bool known = false;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (text.find(keys[i]) == std::string_view::npos) continue;
        known = true;
        if (record.seen >> i & 1) dropValue(form, record, "there twice");
        record.seen |= 1U << i;
        if (equals != std::string_view::npos)
            lookAtValue(keys[i], trimmed(text.substr(equals + 1)), kind, record, form);
    }
    if (!known && !text.empty() && text != "]") drop(form, "a line that is no value of a record");
}

ListForm formOfPvcs(std::string_view text, const Kind& kind) {
    ListForm form;
    TextLines lines(text);
    bool begun = false;
    RecordPlace record{0};
    for (bool more = true; more;) {
        std::string_view line;
        more = lines.next(line);
        if (!line.starts_with(recordBegin)) {
            const std::string_view word = trimmed(line);
            if (!word.empty() && word != "]")
                drop(form, isComment(line) ? "a comment" : "a line beside its records");
            continue;
        }
        begun = true;
        const std::size_t hash = line.find('#');
        lookAtComment(line, hash, form);
        if (!trimmed(line.substr(0, hash)).substr(recordBegin.size()).empty())
            drop(form, "text beside its records");
        ++record.number;
        record.seen = 0;
        int missing = recordLines;
        for (; more && missing > 0; --missing) {
            more = lines.next(line);
            lookAtRecordLine(line, kind, record, form);
        }
        // A line without an end counts as cut, too.
        form.cut = missing != 0 || !more;
        if (form.cut)
            drop(form, "a last record that is cut");
        else
            form.hasEntry = true;
    }
    form.isList = form.isList && (begun || onlyComments(text));
    return form;
}

std::vector<int> pvcLines(std::string_view text) {
    std::vector<int> all;
    TextLines lines(text);
    std::string_view line;
    int number = 0;
    while (lines.next(line)) {
        ++number;
        if (!line.starts_with(recordBegin)) continue;
        const int begin = number;
        int missing = recordLines;
        for (; missing > 0 && lines.next(line); --missing) ++number;
        if (missing == 0) all.push_back(begin);
    }
    return all;
}

}  // namespace

ListForm listForm(std::string_view text, const std::vector<AtmRoutedPvc>&) {
    return formOfPvcs(text, {isDottedDecimal, isMacText});
}

ListForm listForm(std::string_view text, const std::vector<AtmBridgedPvc>&) {
    return formOfPvcs(text, {isMacText, isDottedDecimal});
}

ListForm listForm(std::string_view text, const std::vector<esiSelector>&) {
    ListForm form;
    if (onlyComments(text)) {
        if (!trimmed(text).empty()) drop(form, "a comment");
        return form;
    }
    // With other characters among those of a client all that follow are read as other ones.
    std::string client;
    for (const char c : text) {
        if (isSpace(c)) continue;
        client += c;
        if (client.size() < clientLength) continue;
        form.hasEntry = true;
        form.isList = form.isList && isClientText(client);
        client.clear();
    }
    form.isList = form.isList && form.hasEntry;
    form.cut = form.isList && !client.empty();
    if (!client.empty()) drop(form, "a last client that is cut");
    return form;
}

std::vector<int> entryLines(std::string_view text, const std::vector<AtmRoutedPvc>&) {
    return pvcLines(text);
}

std::vector<int> entryLines(std::string_view text, const std::vector<AtmBridgedPvc>&) {
    return pvcLines(text);
}

std::vector<int> entryLines(std::string_view text, const std::vector<esiSelector>&) {
    std::vector<int> all;
    int line = 1, begin = 1;
    std::size_t length = 0;
    for (const char c : text) {
        if (c == '\n') ++line;
        if (isSpace(c)) continue;
        if (length++ == 0) begin = line;
        if (length < clientLength) continue;
        all.push_back(begin);
        length = 0;
    }
    return all;
}

bool isOutside(std::string_view name) {
    const std::string_view folder = "/etc/atm/";
    const std::string path = std::filesystem::path(name).lexically_normal().string();
    return !path.starts_with(folder) || path.size() == folder.size();
}
