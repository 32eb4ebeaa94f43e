#include "ctl/paths.h"

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

// A number without sign and leading zeros, of which those that are too large are one; nothing: it is none.
std::optional<std::size_t> numberIn(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789") != text.npos) return {};
    if (text[0] == '0' && text.size() > 1) return {};
    return platform::wholeNumber<std::size_t>(text).value_or(static_cast<std::size_t>(-1));
}

int readAdapter(std::string_view text) {
    constexpr std::string_view word = "adapter";
    const auto number = text.starts_with(word) ? numberIn(text.substr(word.size())) : std::nullopt;
    if (!number) noSuchPath(text);
    if (*number < 1 || *number > asIndex(adapterCount)) notThere(text);
    return static_cast<int>(*number) - 1;
}

}  // namespace

ServiceId readService(std::string_view path) {
    const std::size_t slash = path.find('/');
    if (slash == path.npos) noSuchPath(path);
    const int adapter = readAdapter(path.substr(0, slash));
    const std::span<const NamedService> all = namedServices(adapter);
    const auto found = std::ranges::find(all, path, [](const NamedService& s) { return s.name.path; });
    if (found != all.end()) return {adapter, static_cast<std::size_t>(found - all.begin())};
    const std::string_view service = path.substr(slash + 1);
    for (const std::string_view kind : {"lec", "les"})
        if (service.starts_with(kind) && numberIn(service.substr(kind.size()))) notThere(path);
    noSuchPath(path);
}

std::vector<ServiceId> readPath(std::string_view path) {
    if (path.find('/') != path.npos) return {readService(path)};
    return servicesOf(readAdapter(path));
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
    KeyPath path{readService(text.substr(0, dot)), std::string(text.substr(dot + 1)), {}};
    const std::size_t bracket = path.key.find('[');
    if (bracket == std::string::npos) return path;
    if (!path.key.ends_with(']')) noSuchPath(text);
    path.entry = numberIn(std::string_view(path.key).substr(bracket + 1, path.key.size() - bracket - 2));
    if (!path.entry) noSuchPath(text);
    path.key.resize(bracket);
    return path;
}
