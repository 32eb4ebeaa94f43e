#include "change/sentfile.h"

#include "platform/safetext.h"

#include <charconv>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;
using platform::escaped;

constexpr int format = 1;  // grows when a reader of the present one would misunderstand

// What one reading has met so far. Members that are not looked for are skipped.
class Reader {
  public:
    bool good = true;

    const Json& object(const Json& of, const char* member) {
        static const Json nothing = Json::object();
        const auto found = of.is_object() ? of.find(member) : of.end();
        if (found != of.end() && found->is_object()) return *found;
        good = false;
        return nothing;
    }
    std::string text(const Json& of, const char* member) {
        const auto found = of.is_object() ? of.find(member) : of.end();
        if (found != of.end() && found->is_string())
            return platform::unescaped(found->get_ref<const std::string&>());
        good = false;
        return {};
    }
    int number(const std::string& digits) {
        int value = 0;
        const char* end = digits.data() + digits.size();
        const auto [stopped, error] = std::from_chars(digits.data(), end, value);
        if (error != std::errc() || stopped != end) good = false;
        return value;
    }
};

}  // namespace

std::string SentFile::text(const LastSent& sent) {
    Json adapters = Json::object();
    for (const auto& [number, adapter] : sent.adapters_) {
        Json services = Json::object();
        for (const auto& [service, values] : adapter.services) {
            Json& of = services[escaped(service)] = Json::object();
            for (const auto& [key, value] : values)
                of[escaped(key)] = {{"value", escaped(value.text)}, {"time", escaped(value.time)}};
        }
        adapters[std::to_string(number + 1)] = {
            {"boot", escaped(adapter.identity.boot)},  {"revision", escaped(adapter.identity.revision)},
            {"mac", escaped(adapter.identity.mac)},    {"device", escaped(adapter.identity.device)},
            {"forgotten", escaped(adapter.forgotten)}, {"services", std::move(services)}};
    }
    const Json json{
        {"format", format}, {"forgotten", escaped(sent.forgotten_)}, {"adapters", std::move(adapters)}};
    return json.dump(1) + '\n';
}

bool SentFile::read(std::string_view text, LastSent& sent) {
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object() || json.value("format", Json()) != format) return false;
    Reader from;
    LastSent result;
    result.forgotten_ = from.text(json, "forgotten");
    for (const auto& [number, adapter] : from.object(json, "adapters").items()) {
        const int counted = from.number(number);  // from 1
        if (counted < 1) return false;
        LastSent::Adapter& to = result.adapters_[counted - 1];
        to.identity = {from.text(adapter, "boot"), from.text(adapter, "revision"), from.text(adapter, "mac"),
                       adapter.value("device", "")};
        to.forgotten = from.text(adapter, "forgotten");
        for (const auto& [service, values] : from.object(adapter, "services").items()) {
            if (!values.is_object()) return false;
            auto& known = to.services[platform::unescaped(service)];
            for (const auto& [key, value] : values.items())
                known[platform::unescaped(key)] = {from.text(value, "value"), from.text(value, "time")};
        }
    }
    if (from.good) sent = std::move(result);
    return from.good;
}
