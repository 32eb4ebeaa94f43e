#include "ctl/settings.h"

#include "config/recordrows.h"
#include "ctl/status.h"
#include "model/addresstext.h"
#include "platform/number.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <limits>
#include <optional>

using platform::escaped;

namespace {

// The order in which keys are shown; in the file they stand in another one.
template <class Record> constexpr std::span<const char* const> shownOrder();
constexpr const char* sigOrder[] = {"uniRevision", "addressRegistration", "portChangeDetect",
                                    "registerOtherPrefixes", "networkPrefix"};
constexpr const char* lecOrder[] = {"enabled", "pvcOnly",       "elanName",    "elanType", "mtu",    "l3Mtu",
                                    "useLecs", "networkPrefix", "esiSelector", "mac",      "pvcFile"};
constexpr const char* lesOrder[] = {"enabled",   "elanName",   "elanType",  "mtu",
                                    "strictMtu", "strictName", "clientFile"};
constexpr const char* lecsOrder[] = {"enabled",      "elanType",      "ethernetMtu",
                                     "tokenRingMtu", "networkPrefix", "esiSelector"};
constexpr const char* ipOrder[] = {"enabled",       "pvcOnly",     "address", "subnetMask", "serverAddress",
                                   "networkPrefix", "esiSelector", "mac",     "pvcFile"};
template <> constexpr std::span<const char* const> shownOrder<AtmSig>() {
    return sigOrder;
}
template <> constexpr std::span<const char* const> shownOrder<AtmLEC>() {
    return lecOrder;
}
template <> constexpr std::span<const char* const> shownOrder<AtmLES>() {
    return lesOrder;
}
template <> constexpr std::span<const char* const> shownOrder<AtmLECS>() {
    return lecsOrder;
}
template <> constexpr std::span<const char* const> shownOrder<AtmIP1577>() {
    return ipOrder;
}

template <class Record> const KeyRow<Record>* rowOf(std::string_view key) {
    const auto rows = keyRows<Record>();
    const auto row = std::ranges::find(rows, key, &KeyRow<Record>::name);
    return row == rows.end() ? nullptr : &*row;
}

template <class Record> bool isReadOnly(const KeyRow<Record>* row) {
    return !row || std::holds_alternative<FileField<Record>>(row->field);
}

// How a setting stands in JSON.
enum class Kind { boolean, number, text };

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

template <class Record> Kind kindOf(const KeyRow<Record>& row) {
    if (!std::holds_alternative<std::int32_t Record::*>(row.field)) return Kind::text;
    if (row.codes.empty()) return Kind::number;
    if (std::string_view(row.codes[0].name) == "false") return Kind::boolean;
    const auto digits = [](const CodeName& code) { return isNumber(code.name); };
    return std::ranges::all_of(row.codes, digits) ? Kind::number : Kind::text;
}

// A number or a flag that has no name is a text in JSON.
Json jsonOf(Kind kind, const std::string& text) {
    if (kind == Kind::boolean && (text == "true" || text == "false")) return text == "true";
    if (const auto number = platform::wholeNumber<std::int64_t>(text); number && kind == Kind::number)
        return *number;
    return text;
}

template <class Record> std::string textOf(const KeyRow<Record>& row, const Record& record) {
    return escaped(valueText(row, record, ValueForm::name));
}

template <class Record> Setting readOnlySetting(const std::string& key, const Record& record, bool macKnown) {
    if constexpr (requires { record.mac; })
        if (key == "mac") {
            const std::string mac = record.mac.GetFMacAddress();
            return {key, macKnown ? mac : "unknown", macKnown ? Json(mac) : Json(), true};
        }
    const std::string text = textOf(*rowOf<Record>(key), record);
    return {key, text, text, true};
}

[[noreturn]] void noKey(const KeyPath& path) {
    throw Failure(Status::usage,
                  fmt::format("{} has no setting \"{}\"", path.service.name().path, escaped(path.key)),
                  path.service.name().path);
}

// "code 7"
std::optional<std::int32_t> unnamedCode(std::string_view text) {
    constexpr std::string_view word = "code ";
    if (!text.starts_with(word)) return {};
    text.remove_prefix(word.size());
    return platform::wholeNumber<std::int32_t>(text);
}

// Sets a value, or says why not.
template <class Record> struct Setter {
    const KeyRow<Record>& row;
    Record& record;
    std::string_view text;

    std::string operator()(std::int32_t Record::*field) const {
        for (const CodeName& code : row.codes)
            if (text == code.name) return record.*field = code.code, "";
        const auto unnamed = unnamedCode(text);
        const auto named = [&](const CodeName& code) { return code.code == unnamed; };
        if (!row.codes.empty()) {
            if (unnamed && std::ranges::none_of(row.codes, named)) return record.*field = *unnamed, "";
            std::vector<std::string_view> names;
            for (const CodeName& code : row.codes) names.emplace_back(code.name);
            return fmt::format("takes {}", fmt::join(names, ", "));
        }
        const auto number = platform::wholeNumber<std::int32_t>(text);
        if (!isNumber(text) || !number || *number > row.most) return fmt::format("takes 0 to {}", row.most);
        record.*field = *number;
        return {};
    }

    std::string operator()(ElanName Record::*field) const {
        constexpr std::size_t longest = 30;  // of 31 the last one is lost when the file is read
        const std::string name = platform::unescaped(text);
        if (name.size() > longest) return fmt::format("has at most {} characters", longest);
        const auto misfit = [](char c) { return c <= ' ' || c > 'z' || c == '#' || c == '[' || c == ']'; };
        if (std::ranges::any_of(name, misfit)) return "takes ASCII without blank, # [ ] { } | and ~";
        record.*field = name;
        return {};
    }

    std::string operator()(AddressText Record::*field) const {
        if (text.empty()) return record.*field = "", "";
        const AddressReading ip = ReadAddress(AddressKind::ip, text);
        if (ip.reason.empty()) record.*field = ipAddress(ip.as<4>()).GetFIPAddress();
        return ip.reason;
    }

    std::string operator()(const AddressField<Record>& field) const {
        const bool prefix = field.half == addressPrefix;
        const AddressReading half =
            ReadAddress(prefix ? AddressKind::prefix : AddressKind::esiSelector, text);
        if (!half.reason.empty()) return half.reason;
        std::string digits;
        for (const std::uint8_t byte : half.bytes) digits += fmt::format("{:02x}", byte);
        atmAddress& address = record.*field.address;
        prefix ? address.setNetworkPrefix(digits) : address.setESISelector(digits);
        return {};
    }

    std::string operator()(const FileField<Record>&) const { return {}; }
};

template <class Record> void set(const KeyPath& path, std::string_view text, Record& record) {
    const KeyRow<Record>* row = rowOf<Record>(path.key);
    if (isReadOnly(row)) {
        if (!std::ranges::count(shownOrder<Record>(), path.key)) noKey(path);
        throw Failure(Status::usage, fmt::format("{} is for reading only", path.text()), path.text());
    }
    if (text == textOf(*row, record)) return;
    if (const std::string reason = std::visit(Setter<Record>{*row, record, text}, row->field);
        !reason.empty())
        throw Failure(Status::wrongValue,
                      fmt::format("{}: \"{}\": {}", path.text(), escaped(text.substr(0, 80)), reason),
                      path.text());
}

const char* nameOf(Kind kind) {
    return kind == Kind::boolean ? "true or false" : kind == Kind::number ? "a number" : "a text";
}

}  // namespace

std::vector<Setting> settingsOf(const ServiceId& service, const AtmDevices& devices, bool macKnown) {
    std::vector<Setting> settings;
    withRecord(service, [&](auto record) {
        const auto& from = record(devices);
        using Record = std::remove_cvref_t<decltype(from)>;
        for (const char* key : shownOrder<Record>()) {
            const KeyRow<Record>* row = rowOf<Record>(key);
            if (isReadOnly(row)) {
                settings.push_back(readOnlySetting(key, from, macKnown));
                continue;
            }
            const std::string text = textOf(*row, from);
            settings.push_back({key, text, jsonOf(kindOf(*row), text)});
        }
    });
    return settings;
}

std::string listOfService(const ServiceId& service) {
    std::string name;
    withRecord(service, [&](auto record) {
        AtmDevices* none = nullptr;
        using Record = std::remove_cvref_t<decltype(record(*none))>;
        if constexpr (hasList<Record>) name = listName<Record>;
    });
    return name;
}

bool hasKey(const ServiceId& service, std::string_view key) {
    bool has = key == listOfService(service) && !key.empty();
    withRecord(service, [&](auto record) {
        AtmDevices* none = nullptr;
        has |= std::ranges::count(shownOrder<std::remove_cvref_t<decltype(record(*none))>>(), key) > 0;
    });
    return has;
}

bool isReadOnly(const ServiceId& service, std::string_view key) {
    bool readOnly = false;
    withRecord(service, [&](auto record) {
        AtmDevices* none = nullptr;
        readOnly = isReadOnly(rowOf<std::remove_cvref_t<decltype(record(*none))>>(key));
    });
    return readOnly && hasKey(service, key) && key != listOfService(service);
}

std::vector<std::string> valueNames(const ServiceId& service, std::string_view key) {
    std::vector<std::string> names;
    withRecord(service, [&](auto record) {
        AtmDevices* none = nullptr;
        if (const auto* row = rowOf<std::remove_cvref_t<decltype(record(*none))>>(key))
            for (const CodeName& code : row->codes) names.emplace_back(code.name);
    });
    return names;
}

Json settingJson(const ServiceId& service, std::string_view key, const std::string& text) {
    Json json = text;
    withRecord(service, [&](auto record) {
        AtmDevices* none = nullptr;
        if (const auto* row = rowOf<std::remove_cvref_t<decltype(record(*none))>>(key))
            json = jsonOf(kindOf(*row), text);
    });
    return json;
}

void setSetting(const KeyPath& path, std::string_view text, AtmDevices& devices) {
    withRecord(path.service, [&](auto record) { set(path, text, record(devices)); });
}

void setFromJson(const KeyPath& path, const Json& value, AtmDevices& devices) {
    withRecord(path.service, [&](auto record) {
        auto& into = record(devices);
        using Record = std::remove_cvref_t<decltype(into)>;
        const KeyRow<Record>* row = rowOf<Record>(path.key);
        if (!row) noKey(path);
        const Kind kind = kindOf(*row);
        const bool fits = value.is_string() ? kind == Kind::text ||
                                                  value.get_ref<const std::string&>().starts_with("code ") ||
                                                  jsonOf(kind, textOf(*row, into)) == value
                          : kind == Kind::boolean ? value.is_boolean()
                                                  : kind == Kind::number && value.is_number_integer();
        if (!fits)
            throw Failure(Status::wrongValue, fmt::format("{} takes {}", path.text(), nameOf(kind)),
                          path.text());
        set(path, value.is_string() ? value.get<std::string>() : value.dump(), into);
    });
}

std::string settingLine(const std::string& where, const std::string& text) {
    return text.empty() ? where + " =" : fmt::format("{} = {}", where, text);
}
