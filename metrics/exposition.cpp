#include "metrics/exposition.h"

#include "platform/safetext.h"

#include <fmt/format.h>
#include <iterator>
#include <stdexcept>

namespace metrics {

namespace {

const char* nameOf(FamilyType type) {
    return type == FamilyType::counter ? "counter" : "gauge";
}

// Between the double quotes of a label.
void appendQuoted(std::string_view value, std::string& text) {
    text += '"';
    for (const char c : platform::escaped(value)) {
        if (c == '"' || c == '\\') text += '\\';
        text += c;
    }
    text += '"';
}

}  // namespace

Exposition::Exposition(std::span<const Family> families) {
    for (const Family& family : families) {
        places_.emplace(family.name, families_.size());
        families_.push_back({&family});
    }
}

void Exposition::add(std::string_view family, const Labels& labels, double value) {
    const auto place = places_.find(family);
    if (place == places_.end()) throw std::logic_error("there is no family " + std::string(family));
    std::string& text = families_[place->second].text;
    text += family;
    char separator = '{';
    for (const Label& label : labels) {
        text += separator;
        text += label.name;
        text += '=';
        appendQuoted(label.value, text);
        separator = ',';
    }
    fmt::format_to(std::back_inserter(text), "{} {}\n", labels.empty() ? "" : "}", value);
}

std::string Exposition::text() const {
    std::string text;
    for (const Lines& lines : families_)
        if (!lines.text.empty())
            text += fmt::format("# HELP {0} {1}\n# TYPE {0} {2}\n{3}", lines.family->name, lines.family->help,
                                nameOf(lines.family->type), lines.text);
    return text;
}

}  // namespace metrics
