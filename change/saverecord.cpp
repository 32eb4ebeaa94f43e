#include "change/saverecord.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <xxhash.h>

namespace {

constexpr std::string_view firstLine = "tarvolin-save 1\n";
constexpr std::string_view endWord = "end\t";

bool isWritable(std::string_view text) {
    return !text.empty() && text.find_first_of(std::string_view("\t\n\0", 3)) == std::string_view::npos;
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t tab = line.find('\t');
        fields.push_back(line.substr(0, tab));
        if (tab == std::string_view::npos) return fields;
        line.remove_prefix(tab + 1);
    }
}

std::optional<SaveStep> parseStep(std::string_view line) {
    const auto fields = fieldsOf(line);
    const auto place = [&] { return platform::HostPath{std::string(fields[1])}; };
    const auto text = [&](std::size_t i) { return std::string(fields[i]); };
    SaveStep step;
    if (fields.size() == 5 && fields[0] == "replace")
        step = {place(), text(2), text(3), text(4), {}};
    else if (fields.size() == 4 && fields[0] == "remove")
        step = {place(), {}, text(3), noContent, text(2)};
    else
        return {};
    const bool inPlace = step.place.text.starts_with('/') && step.copy.find('/') == std::string::npos;
    const bool named = fields[0] == "remove" || step.copy.starts_with('.');
    return inPlace && named ? std::optional(step) : std::nullopt;
}

}  // namespace

platform::HostPath SaveStep::copyPlace() const {
    return {platform::directoryOf(place).text + '/' + copy};
}

std::string contentHash(std::string_view bytes) {
    const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
    return fmt::format("{:016x}{:016x}", hash.high64, hash.low64);
}

std::string fileIdentity(const struct stat& status) {
    return fmt::format("{}:{}.{:09}", status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

std::optional<std::string> saveRecordText(std::span<const SaveStep> steps) {
    std::string text(firstLine);
    for (const SaveStep& step : steps) {
        if (!isWritable(step.place.text) || !isWritable(step.removes() ? step.identity : step.copy))
            return {};
        text += step.removes()
                    ? fmt::format("remove\t{}\t{}\t{}\n", step.place.text, step.identity, step.before)
                    : fmt::format("replace\t{}\t{}\t{}\t{}\n", step.place.text, step.copy, step.before,
                                  step.after);
    }
    return text + fmt::format("{}{}\n", endWord, contentHash(text));
}

std::optional<std::vector<SaveStep>> parseSaveRecord(std::string_view text) {
    if (!text.starts_with(firstLine) || !text.ends_with('\n')) return {};
    const std::size_t end = text.rfind('\n', text.size() - 2) + 1;
    const std::string_view body = text.substr(0, end);
    if (text.substr(end) != fmt::format("{}{}\n", endWord, contentHash(body))) return {};
    std::vector<SaveStep> steps;
    for (std::string_view rest = body.substr(firstLine.size()); !rest.empty();) {
        const std::size_t length = rest.find('\n');
        const std::optional<SaveStep> step = parseStep(rest.substr(0, length));
        if (!step) return {};
        steps.push_back(*step);
        rest.remove_prefix(length + 1);
    }
    return steps;
}
