// set PATH.KEY=VALUE...: as the fields and OK of the configuration dialog would, as one change.
#include "ctl/changing.h"
#include "ctl/settings.h"
#include "model/tvtypes.h"
#include "model/wellknown.h"
#include "platform/safetext.h"

#include <fmt/format.h>
#include <map>
#include <memory>
#include <set>

namespace {

struct Assignment {
    KeyPath path;
    std::string value;
};

Assignment readAssignment(const std::string& word) {
    const std::size_t equals = word.find('=');
    if (equals == word.npos)
        throw Failure(Status::usage, fmt::format("\"{}\" is not PATH.KEY=VALUE", platform::escaped(word)));
    Assignment assignment{readKeyPath(word.substr(0, equals)), word.substr(equals + 1)};
    if (assignment.path.key == listOfService(assignment.path.service))
        throw Failure(Status::usage,
                      fmt::format("{} is a list: see pvc, client and apply", assignment.path.text()),
                      assignment.path.text());
    return assignment;
}

std::string digitsOf(std::string_view address) {
    std::string digits(address);
    std::erase_if(digits, [](char c) { return c == ':' || c == '-'; });
    return digits;
}

// What the fields of a client do beside, where the user has not said otherwise.
void followUp(const AtmLEC& before, AtmLEC& client, const std::set<std::string>& given) {
    const int size = MtuSize(client.mtuClass);
    if (given.contains("mtu") && !given.contains("l3Mtu") && client.mtuClass != before.mtuClass &&
        client.l3Mtu < size)
        client.l3Mtu = size;
    if (given.contains("useLecs") && client.useLecs == 1 && before.useLecs != 1) {
        if (!given.contains("networkPrefix"))
            client.address.setNetworkPrefix(digitsOf(wellKnownAddress.networkPrefix));
        if (!given.contains("esiSelector"))
            client.address.setESISelector(digitsOf(wellKnownAddress.esiSelector));
    }
}

Output set(Session& session, const std::vector<std::string>& words, const ChangeOptions& options) {
    std::vector<Assignment> all;
    std::map<std::string, std::set<std::string>> given;
    FirstFailure first;
    if (!options.dryRun) first.of(requireRoot);
    for (const std::string& word : words)
        first.of([&] {
            all.push_back(readAssignment(word));
            const KeyPath& path = all.back().path;
            if (!given[path.service.name().path].insert(path.key).second)
                throw Failure(Status::usage, fmt::format("{} is given twice", path.text()), path.text());
        });
    first.raise();
    readFor(session, options.dryRun);
    const AtmDevices before = session.devices;
    for (const Assignment& assignment : all) setSetting(assignment.path, assignment.value, session.devices);
    for (const Assignment& assignment : all)
        withRecord(assignment.path.service, [&](auto record) {
            if constexpr (std::is_same_v<std::remove_cvref_t<decltype(record(before))>, AtmLEC>)
                followUp(record(before), record(session.devices), given[assignment.path.service.name().path]);
        });
    return carryOut(session, before, options);
}

}  // namespace

Run addSet(CLI::App& command) {
    const auto words = std::make_shared<std::vector<std::string>>();
    const auto options = std::make_shared<ChangeOptions>();
    command.add_option("PATH.KEY=VALUE", *words, "adapter1/lec2.mtu=4544")->required();
    options->add(command);
    return [words, options](Session& session) { return set(session, *words, *options); };
}
