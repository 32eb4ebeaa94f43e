#include "change/manifest.h"

#include "platform/safetext.h"
#include "platform/wallclock.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace {

using Json = nlohmann::ordered_json;
using platform::escaped;

constexpr int format = 1;  // grows when a reader of the present one would misunderstand

Json account(const std::optional<platform::Account>& of) {
    if (!of) return nullptr;
    return {{"id", of->id}, {"name", of->name.empty() ? Json() : Json(escaped(of->name))}};
}

Json textOrNull(const std::string& text) {
    return text.empty() ? Json() : Json(escaped(text));
}

// An array of what `describe` makes of each item.
template <class Item, class Describe> Json each(const std::vector<Item>& items, Describe describe) {
    Json result = Json::array();
    for (const Item& item : items) result.push_back(describe(item));
    return result;
}

Json file(const KeptFile& of) {
    return {{"name", escaped(of.name)}, {"stored", textOrNull(of.stored)}};
}

Json key(const KeyChange& of) {
    return {{"key", escaped(of.key)}, {"old", escaped(of.before)}, {"new", escaped(of.after)}};
}

Json list(const ListChange& of) {
    return {
        {"key", escaped(of.key)}, {"added", each(of.added, escaped)}, {"removed", each(of.removed, escaped)}};
}

Json request(const SentRequest& of) {
    const bool answered = of.answer == RequestResult::taken || of.answer == RequestResult::refused;
    return {{"service", escaped(of.service)},
            {"request", escaped(of.request)},
            {"subject", textOrNull(of.subject)},
            {"answer", answerWord(of.answer)},
            {"resp", answered ? Json(of.resp) : Json()}};
}

}  // namespace

std::string manifestText(const Manifest& manifest, const ChangeRecord& record) {
    const Json json{
        {"format", format},
        {"change", manifest.number},
        {"time", platform::dateAndTime(manifest.time)},
        {"user", account(manifest.invoker.user)},
        {"login", account(manifest.invoker.login)},
        {"sudo", textOrNull(manifest.invoker.sudoUser)},
        {"pkexec", account(manifest.invoker.pkexecUser)},
        {"program", escaped(record.program)},
        {"host", textOrNull(manifest.host)},
        {"display", textOrNull(record.display)},
        {"files", each(manifest.files, file)},
        {"keys", each(record.keys, key)},
        {"lists", each(record.lists, list)},
        {"requests", each(record.requests, request)},
        {"taken_over",
         {{"keys", each(record.takenOverKeys, key)}, {"lists", each(record.takenOverLists, list)}}},
        {"notes", each(record.notes, escaped)},
        {"result", escaped(record.result)},
    };
    return json.dump(2) + '\n';
}

bool isManifestOf(const std::string& number, const std::string& text) {
    const Json json = Json::parse(text, nullptr, false);
    const auto change = json.find("change");
    return json.is_object() && change != json.end() && *change == number;
}
