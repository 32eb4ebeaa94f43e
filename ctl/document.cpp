#include "ctl/document.h"

#include "ctl/entries.h"
#include "ctl/listing.h"
#include "ctl/settings.h"
#include "ctl/status.h"
#include "platform/openfile.h"
#include "platform/safetext.h"
#include "platform/stream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <set>
#include <unistd.h>
#include <vector>

using platform::escaped;

namespace {

constexpr std::size_t deepest = 6;  // of what show prints: document, adapter, service, list, entry

[[noreturn]] void wrong(const std::string& reason, const std::string& where = {}) {
    throw Failure(Status::wrongValue, where.empty() ? reason : fmt::format("{}: {}", where, reason), where);
}

std::string shortened(std::string_view text) {
    constexpr std::size_t longest = 60;
    return escaped(text.substr(0, longest)) + (text.size() > longest ? "..." : "");
}

// Refuses what nesting and repeated keys would hide. A pass of its own: with a callback the parser would
// search the whole list again after each entry.
class Watch : public nlohmann::json_sax<Json> {
  public:
    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(number_integer_t /*value*/) override { return true; }
    bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
    bool string(string_t& /*value*/) override { return true; }
    bool binary(binary_t& /*value*/) override { return true; }
    bool start_object(std::size_t /*elements*/) override { return open(); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*elements*/) override { return open(); }
    bool end_array() override { return close(); }
    bool key(string_t& key) override {
        if (!keys_.back().insert(key).second)
            wrong(fmt::format("the key \"{}\" stands twice in one object", shortened(key)));
        return true;
    }
    // Json::parse() finds it again, and says where.
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const Json::exception& /*error*/) override {
        return false;
    }

  private:
    bool open() {
        if (keys_.size() >= deepest) wrong("the document is nested too deeply");
        keys_.emplace_back();
        return true;
    }
    bool close() {
        keys_.pop_back();
        return true;
    }

    std::vector<std::set<std::string>> keys_;  // of each open object; an empty set for an open array
};

void needsObject(const Json& json, const std::string& where) {
    if (!json.is_object()) wrong("must be an object", where);
}

template <class Entry> void takeList(const Json& json, const std::string& where, std::vector<Entry>& list) {
    if (!json.is_array()) wrong("must be an array", where);
    std::vector<Entry> read;
    read.reserve(json.size());
    for (const Json& element : json) {
        Entry entry;
        const std::string place = fmt::format("{}[{}]", where, read.size());
        readEntry(element, place, entry);
        if constexpr (requires { entry.rate; })
            if (entry.rate < 0 && !std::ranges::count(list, entry))
                wrong(fmt::format("rate takes 0 to {}", std::numeric_limits<std::int32_t>::max()), place);
        read.push_back(entry);
    }
    list = std::move(read);
}

void takeKey(const ServiceId& service, const std::string& key, const Json& value, AtmDevices& devices) {
    const KeyPath path{service, key, {}};
    if (!hasKey(service, key))
        wrong(fmt::format("there is no setting \"{}\"", shortened(key)), service.name().path);
    if (key != listOfService(service)) {
        if (!isReadOnly(service, key)) setFromJson(path, value, devices);
        return;
    }
    withRecord(service, [&](auto record) {
        auto& into = record(devices);
        if constexpr (hasList<std::remove_cvref_t<decltype(into)>>)
            takeList(value, path.text(), *listOf(into));
    });
}

void takeService(int adapter, const std::string& name, const Json& settings, AtmDevices& devices) {
    const std::string path = adapterName(adapter) + '/' + name;
    const std::vector<ServiceId> all = servicesOf(adapter);
    const auto service = std::ranges::find(all, path, [](const ServiceId& id) { return id.name().path; });
    if (service == all.end())
        wrong(fmt::format("there is no service \"{}\"", shortened(name)), adapterName(adapter));
    needsObject(settings, path);
    for (const auto& [key, value] : settings.items()) takeKey(*service, key, value, devices);
}

}  // namespace

Json readDocument(std::string_view text) {
    if (text.find('\0') != text.npos) wrong("this is no JSON document: it has a NUL byte");
    Json document;
    try {
        Watch watch;
        Json::sax_parse(text, &watch);
        document = Json::parse(text);
    } catch (const Json::parse_error& error) {
        const std::string_view before = text.substr(0, std::min(error.byte, text.size()));
        const auto line = std::ranges::count(before, '\n') + 1;
        wrong(fmt::format("this is no JSON document: line {}, byte {}", line,
                          before.size() - (before.rfind('\n') + 1)));
    } catch (const Json::exception&) {
        wrong("this is no JSON document: a number is too large");
    }
    needsObject(document, "the document");
    const auto format = document.find("format");
    if (format == document.end()) wrong("the document has no \"format\"");
    if (*format != 1) wrong("the document is of a format that is not known here: 1 is", "format");
    return document;
}

void applyDocument(const Json& document, AtmDevices& devices) {
    for (const auto& [name, services] : document.items()) {
        if (name == "format") continue;
        int adapter = 0;
        while (adapter < adapterCount && adapterName(adapter) != name) ++adapter;
        if (adapter == adapterCount) wrong(fmt::format("there is no \"{}\"", shortened(name)));
        needsObject(services, name);
        for (const auto& [service, settings] : services.items())
            takeService(adapter, service, settings, devices);
    }
}

std::string readDocumentFile(const std::string& file) {
    const auto fail = [&](int error) { wrong(std::strerror(error), file == "-" ? "standard input" : file); };
    if (file != "-") {
        std::string text;
        if (!platform::readWhole(platform::HostPath{file}, text, largestDocument)) fail(errno);
        return text;
    }
    std::string text;
    std::array<char, 1UL << 16U> block;
    for (;;) {
        const ssize_t n = ::read(STDIN_FILENO, block.data(), block.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) fail(errno);
        if (n == 0) return text;
        text.append(block.data(), static_cast<std::size_t>(n));
        if (text.size() > largestDocument) fail(EFBIG);
    }
}
