#include "ctl/paths.h"

#include "ctl/listing.h"
#include "ctl/settings.h"
#include "ctl/status.h"
#include "platform/number.h"
#include "platform/safetext.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

[[noreturn]] void noSuchPath(std::string_view text) {
    throw Failure(Status::usage,
                  fmt::format("\"{}\" is no path, such as adapter1/lec2", platform::escaped(text)));
}
[[noreturn]] void notThere(std::string_view text) {
    throw Failure(Status::notThere, fmt::format("there is no {}", text), std::string(text));
}

// A number without sign and leading zeros; one that is too large becomes the largest. Nothing: it is none.
std::optional<std::size_t> numberIn(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789") != text.npos) return {};
    if (text[0] == '0' && text.size() > 1) return {};
    return platform::wholeNumber<std::size_t>(text).value_or(static_cast<std::size_t>(-1));
}

// What a path names, and whether that can exist. In place of what cannot, the first of its kind.
template <class Place> struct Reading {
    Place place = {};
    bool there = true;
};

Reading<int> adapterIn(std::string_view text) {
    constexpr std::string_view word = "adapter";
    const auto number = text.starts_with(word) ? numberIn(text.substr(word.size())) : std::nullopt;
    if (!number) noSuchPath(text);
    const bool there = *number >= 1 && *number <= asIndex(adapterCount);
    return {there ? static_cast<int>(*number) - 1 : 0, there};
}

Reading<ServiceId> serviceIn(std::string_view path) {
    const std::size_t slash = path.find('/');
    if (slash == path.npos) noSuchPath(path);
    const Reading<int> adapter = adapterIn(path.substr(0, slash));
    const std::string_view name = path.substr(slash + 1);
    for (const ServiceId& service : servicesOf(adapter.place))
        if (shortName(service) == name) return {service, adapter.there};
    for (const auto& [kind, first] : {std::pair("lec", firstLec), std::pair("les", firstLes)})
        if (name.starts_with(kind) && numberIn(name.substr(std::string_view(kind).size())))
            return {{adapter.place, first}, false};
    noSuchPath(path);
}

}  // namespace

ServiceId readService(std::string_view path) {
    const Reading<ServiceId> service = serviceIn(path);
    if (!service.there) notThere(path);
    return service.place;
}

ServiceId readListService(const std::string& path, std::string_view list) {
    const Reading<ServiceId> service = serviceIn(path);
    if (listOfService(service.place) != list)
        throw Failure(Status::usage, fmt::format("{} has no {}", path, list), path);
    if (!service.there) notThere(path);
    return service.place;
}

std::vector<ServiceId> readPath(std::string_view path) {
    if (path.find('/') != path.npos) return {readService(path)};
    const Reading<int> adapter = adapterIn(path);
    if (!adapter.there) notThere(path);
    return servicesOf(adapter.place);
}

std::vector<ServiceId> servicesOf(int adapter) {
    std::vector<ServiceId> all;
    for (std::size_t i = 0; i < namedServices(adapter).size(); ++i) all.push_back({adapter, i});
    return all;
}

std::string KeyPath::text() const {
    const std::string setting = fmt::format("{}.{}", service.name().path, key);
    return entry ? fmt::format("{}[{}]", setting, *entry) : setting;
}

KeyPath readKeyPath(std::string_view text) {
    const std::size_t dot = text.find('.');
    if (dot == text.npos)
        throw Failure(Status::usage, fmt::format("\"{}\" names no setting, such as adapter1/lec2.mtu",
                                                 platform::escaped(text)));
    const Reading<ServiceId> service = serviceIn(text.substr(0, dot));
    KeyPath path{service.place, std::string(text.substr(dot + 1)), {}};
    const std::size_t bracket = path.key.find('[');
    if (bracket != std::string::npos) {
        if (!path.key.ends_with(']')) noSuchPath(text);
        path.entry = numberIn(std::string_view(path.key).substr(bracket + 1, path.key.size() - bracket - 2));
        if (!path.entry) noSuchPath(text);
        path.key.resize(bracket);
    }
    const bool isList = path.key == listOfService(path.service);
    if (!hasKey(path.service, path.key) || (path.entry && !isList))
        throw Failure(Status::usage, fmt::format("there is no setting {}", platform::escaped(text)),
                      platform::escaped(text));
    if (!service.there) notThere(text.substr(0, dot));
    return path;
}
