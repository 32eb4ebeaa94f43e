#include "ctl/entries.h"

#include "ctl/status.h"
#include "model/addresstext.h"
#include "platform/index.h"
#include "platform/number.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <optional>
#include <set>

using platform::escaped;

namespace {

// The codes 0 and 1 in JSON.
Json jsonName(const PvcFlag& flag, std::int32_t code) {
    return &flag == &broadcastFlag ? Json(code == 1) : Json(flag.words.at(asIndex(code)));
}

Json jsonOf(const PvcFlag& flag, std::int32_t code) {
    return code == 0 || code == 1 ? jsonName(flag, code) : Json(fmt::format("code {}", code));
}

[[noreturn]] void wrong(const std::string& where, const std::string& reason) {
    throw Failure(Status::wrongValue, where.empty() ? reason : fmt::format("{}: {}", where, reason), where);
}

std::string addressOf(const AtmBridgedPvc& pvc) {
    return pvc.mac.GetFMacAddress();
}
std::string addressOf(const AtmRoutedPvc& pvc) {
    return pvc.ip.GetFIPAddress();
}
constexpr const char* addressKey(const AtmBridgedPvc&) {
    return "mac";
}
constexpr const char* addressKey(const AtmRoutedPvc&) {
    return "ip";
}

template <class Pvc> Json pvcJson(const Pvc& pvc) {
    return {{addressKey(pvc), addressOf(pvc)},
            {"vci", pvc.vci},
            {"encapsulation", jsonOf(encapsulationFlag, pvc.encapsulation)},
            {"broadcast", jsonOf(broadcastFlag, pvc.broadcast)},
            {"rate", pvc.rate}};
}

template <std::size_t N> std::array<std::uint8_t, N> bytesOf(AddressKind kind, const std::string& text) {
    const AddressReading reading = ReadAddress(kind, text);
    if (!reading.reason.empty())
        wrong("", fmt::format("\"{}\": {}", escaped(std::string_view(text).substr(0, 80)), reading.reason));
    return reading.as<N>();
}

// The words of a command, one after the other.
class Words {
  public:
    explicit Words(std::span<const std::string> words) : rest_(words) {}

    bool any() const { return !rest_.empty(); }
    bool skip(std::string_view word) {
        const bool there = !rest_.empty() && rest_.front() == word;
        if (there) rest_ = rest_.subspan(1);
        return there;
    }
    const std::string& next(std::string_view behind) {
        if (rest_.empty()) throw Failure(Status::usage, fmt::format("\"{}\" needs a number", behind));
        const std::string& word = rest_.front();
        rest_ = rest_.subspan(1);
        return word;
    }
    template <class Number> Number number(std::string_view behind) {
        const std::string& text = next(behind);
        const auto number = platform::wholeNumber<Number>(text);
        if (!number || *number > std::numeric_limits<Number>::max())
            wrong("", fmt::format("{} \"{}\": takes 0 to {}", behind, escaped(text),
                                  std::numeric_limits<Number>::max()));
        return *number;
    }

  private:
    std::span<const std::string> rest_;
};

template <class Pvc> void takePvcWords(std::span<const std::string> all, Pvc& pvc) {
    Words words(all);
    std::set<std::string_view> given;
    while (words.any()) {
        const std::string& word = words.next("");
        const auto once = [&](std::string_view what) {
            if (!given.insert(what).second)
                throw Failure(Status::usage, fmt::format("{} is given twice", what));
        };
        const auto takes = [&](const PvcFlag& flag, std::int32_t& field) {
            const bool coded = word == flag.name && words.skip("code");
            const auto named = std::ranges::find(flag.words, word);
            if (!coded && named == flag.words.end()) return false;
            once(flag.name);
            field = coded ? words.number<std::int32_t>("code")
                          : static_cast<std::int32_t>(named - flag.words.begin());
            return true;
        };
        if (word == "vci")
            once(word), pvc.vci = words.number<std::uint16_t>("vci");
        else if (word == "rate")
            once(word), pvc.rate = words.number<std::int32_t>("rate");
        else if (!takes(encapsulationFlag, pvc.encapsulation) && !takes(broadcastFlag, pvc.broadcast))
            throw Failure(Status::usage, fmt::format("\"{}\" is no word of a PVC", escaped(word)));
        if (pvc.rate < 0)
            wrong("", fmt::format("rate: takes 0 to {}", std::numeric_limits<std::int32_t>::max()));
    }
}

std::int32_t readFlag(const PvcFlag& flag, const Json& value, const std::string& where) {
    for (const std::int32_t code : {0, 1})
        if (value == jsonName(flag, code)) return code;
    constexpr std::string_view word = "code ";
    if (value.is_string())
        if (const auto& text = value.get_ref<const std::string&>(); text.starts_with(word))
            if (const auto code =
                    platform::wholeNumber<std::int32_t>(std::string_view(text).substr(word.size()));
                code && *code != 0 && *code != 1)
                return *code;
    wrong(where,
          fmt::format("{} takes {} or {}", flag.name, jsonName(flag, 0).dump(), jsonName(flag, 1).dump()));
}

// A number of a document, negative ones as far as files hold them.
template <class Number> Number readNumber(const Json& value, const char* key, const std::string& where) {
    using Limits = std::numeric_limits<Number>;
    if (value.is_number_unsigned() && value.get<std::uint64_t>() <= static_cast<std::uint64_t>(Limits::max()))
        return static_cast<Number>(value.get<std::uint64_t>());
    if (value.is_number_integer() && value.get<std::int64_t>() < 0 &&
        value.get<std::int64_t>() >= Limits::min())
        return static_cast<Number>(value.get<std::int64_t>());
    wrong(where, fmt::format("{} takes 0 to {}", key, Limits::max()));
}

template <class Pvc> void readPvc(const Json& json, const std::string& where, Pvc& pvc) {
    if (!json.is_object()) wrong(where, "an entry is an object");
    bool addressed = false, numbered = false;
    for (const auto& [key, value] : json.items()) {
        if (key == addressKey(pvc)) {
            if (!value.is_string()) wrong(where, fmt::format("{} is a text", key));
            try {
                takeAddress(value.template get<std::string>(), pvc);
            } catch (const Failure& failure) {
                wrong(where, failure.what());
            }
            addressed = true;
        } else if (key == "vci") {
            pvc.vci = readNumber<std::uint16_t>(value, "vci", where);
            numbered = true;
        } else if (key == "encapsulation") {
            pvc.encapsulation = readFlag(encapsulationFlag, value, where);
        } else if (key == "broadcast") {
            pvc.broadcast = readFlag(broadcastFlag, value, where);
        } else if (key == "rate") {
            pvc.rate = readNumber<std::int32_t>(value, "rate", where);
        } else {
            wrong(where, fmt::format("an entry has no \"{}\"", escaped(key)));
        }
    }
    if (!addressed || !numbered) wrong(where, fmt::format("an entry has {} and vci", addressKey(pvc)));
}

}  // namespace

Json entryJson(const AtmBridgedPvc& pvc) {
    return pvcJson(pvc);
}
Json entryJson(const AtmRoutedPvc& pvc) {
    return pvcJson(pvc);
}
Json entryJson(const esiSelector& client) {
    return client.GetF2EsiSelector();
}

void takeWords(std::span<const std::string> words, AtmBridgedPvc& pvc) {
    takePvcWords(words, pvc);
}
void takeWords(std::span<const std::string> words, AtmRoutedPvc& pvc) {
    takePvcWords(words, pvc);
}

void takeAddress(const std::string& text, AtmBridgedPvc& pvc) {
    pvc.mac = macAddress(bytesOf<6>(AddressKind::mac, text));
}
void takeAddress(const std::string& text, AtmRoutedPvc& pvc) {
    pvc.ip = ipAddress(bytesOf<4>(AddressKind::ip, text));
}
esiSelector readClient(const std::string& text) {
    return esiSelector(bytesOf<7>(AddressKind::esiSelector, text));
}

void readEntry(const Json& json, const std::string& where, AtmBridgedPvc& pvc) {
    pvc.encapsulation = 1;
    readPvc(json, where, pvc);
}
void readEntry(const Json& json, const std::string& where, AtmRoutedPvc& pvc) {
    pvc.encapsulation = 1;
    readPvc(json, where, pvc);
}
void readEntry(const Json& json, const std::string& where, esiSelector& client) {
    if (!json.is_string()) wrong(where, "a client is a text");
    try {
        client = readClient(json.get<std::string>());
    } catch (const Failure& failure) {
        wrong(where, failure.what());
    }
}
