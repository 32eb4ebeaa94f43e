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
    return {{"name", escaped(of.name)},
            {"stored", textOrNull(of.stored)},
            {"after", textOrNull(of.after)},
            {"rights", textOrNull(of.rights)}};
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
        {"from", textOrNull(record.from)},
        {"note", textOrNull(record.note)},
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

namespace {

// Members that are missing, or of another type, are empty.
const Json& member(const Json& of, const char* name) {
    static const Json none;
    const auto found = of.is_object() ? of.find(name) : of.end();
    return of.is_object() && found != of.end() ? *found : none;
}
std::string text(const Json& of) {
    return of.is_string() ? platform::unescaped(of.get<std::string>()) : std::string();
}
std::string text(const Json& of, const char* name) {
    return text(member(of, name));
}

template <class Item, class Read> std::vector<Item> all(const Json& of, Read read) {
    std::vector<Item> items;
    if (of.is_array())
        for (const Json& each : of) items.push_back(read(each));
    return items;
}
std::vector<std::string> texts(const Json& of) {
    return all<std::string>(of, [](const Json& each) { return text(each); });
}

std::vector<KeyChange> readKeys(const Json& of) {
    return all<KeyChange>(of, [](const Json& each) {
        return KeyChange{text(each, "key"), text(each, "old"), text(each, "new")};
    });
}
std::vector<ListChange> readLists(const Json& of) {
    return all<ListChange>(of, [](const Json& each) {
        return ListChange{text(each, "key"), texts(member(each, "added")), texts(member(each, "removed"))};
    });
}

RequestResult answer(const std::string& word) {
    for (const RequestResult result :
         {RequestResult::taken, RequestResult::refused, RequestResult::unanswered})
        if (word == answerWord(result)) return result;
    return RequestResult::notSent;
}

platform::Account readAccount(const Json& of) {
    const Json& id = member(of, "id");
    return {id.is_number_unsigned() ? id.get<uid_t>() : 0, text(of, "name")};
}

}  // namespace

std::optional<ReadManifest> readManifest(const std::string& source) {
    const Json json = Json::parse(source, nullptr, false);
    if (!json.is_object() || member(json, "format") != format) return {};
    ReadManifest read;
    read.time = text(json, "time");
    read.manifest.number = text(json, "change");
    read.manifest.host = text(json, "host");
    read.manifest.invoker.user = readAccount(member(json, "user"));
    read.manifest.files = all<KeptFile>(member(json, "files"), [](const Json& of) {
        return KeptFile{text(of, "name"), text(of, "stored"), text(of, "after"), text(of, "rights")};
    });
    ChangeRecord& record = read.record;
    record.program = text(json, "program");
    record.display = text(json, "display");
    record.from = text(json, "from");
    record.note = text(json, "note");
    record.result = text(json, "result");
    record.notes = texts(member(json, "notes"));
    const Json& takenOver = member(json, "taken_over");
    record.keys = readKeys(member(json, "keys"));
    record.lists = readLists(member(json, "lists"));
    record.takenOverKeys = readKeys(member(takenOver, "keys"));
    record.takenOverLists = readLists(member(takenOver, "lists"));
    record.requests = all<SentRequest>(member(json, "requests"), [](const Json& of) {
        const Json& resp = member(of, "resp");
        return SentRequest{text(of, "service"), text(of, "request"), text(of, "subject"),
                           answer(text(of, "answer")), resp.is_number_integer() ? resp.get<int>() : 0};
    });
    return read;
}

bool isManifestOf(const std::string& number, const std::string& text) {
    const Json json = Json::parse(text, nullptr, false);
    const auto change = json.find("change");
    return json.is_object() && change != json.end() && *change == number;
}

std::string withResult(const std::string& text, const std::string& result, const std::string& note) {
    Json json = Json::parse(text, nullptr, false);
    if (!json.is_object()) return {};
    json["result"] = escaped(result);
    if (!json["notes"].is_array()) json["notes"] = Json::array();
    json["notes"].push_back(escaped(note));
    return json.dump(2) + '\n';
}
