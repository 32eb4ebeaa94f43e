#include "ui/advice.h"

#include <algorithm>
#include <string>

namespace {

template <class About> std::string mostSerious(std::span<const Finding> findings, const About& about) {
    const Finding* worst = nullptr;
    for (const Finding& finding : findings)
        if (about(finding) && (!worst || finding.severity > worst->severity)) worst = &finding;
    return worst ? worst->message : "";
}

const char* keyOf(std::span<const AdvisedField> fields, const zEdit* field) {
    if (!field) return nullptr;
    const auto found = std::ranges::find(fields, field->id(), &AdvisedField::id);
    return found == fields.end() ? nullptr : found->key;
}

}  // namespace

zMessageLine::Advice adviceOn(std::span<const Finding> findings, std::string_view service,
                              std::span<const AdvisedField> fields, const zEdit* field) {
    const std::string page = std::string(service) + '.';
    zMessageLine::Advice advice;
    advice.page =
        mostSerious(findings, [&](const Finding& finding) { return finding.path.starts_with(page); });
    if (const char* key = keyOf(fields, field))
        advice.field =
            mostSerious(findings, [&](const Finding& finding) { return finding.path == page + key; });
    return advice;
}

zMessageLine::Advice adviceOnEntry(std::span<const Finding> findings, std::span<const AdvisedField> fields,
                                   const zEdit* field) {
    zMessageLine::Advice advice;
    advice.page = mostSerious(findings, [](const Finding&) { return true; });
    if (const char* key = keyOf(fields, field))
        advice.field = mostSerious(findings, [&](const Finding& finding) { return finding.part == key; });
    return advice;
}
