#include "ctl/listchange.h"

#include "ctl/settings.h"

#include <fmt/format.h>

namespace {

DriverChannel& driverOf(Session& session) {
    session.discovery();
    if (!session.channel()) throw session.noDriver("; --file-only changes the files alone");
    return session.channel();
}

// Sends them one after the other. False: one was not taken, and nothing has changed.
bool sendAll(DriverPhase& phase, DriverChannel& channel, const std::vector<ListStep>& steps) {
    for (std::size_t done = 0; done < steps.size(); ++done) {
        if (steps[done].send(phase, channel) == RequestResult::taken) continue;
        while (done-- > 0) steps[done].undo(phase, channel);
        return false;
    }
    return true;
}

}  // namespace

CLI::App* addListVerb(CLI::App& command, const char* name, const char* summary) {
    command.require_subcommand(1);
    CLI::App* verb = command.add_subcommand(name, summary);
    verb->fallthrough();
    verb->set_help_flag();
    return verb;
}

ServiceId readListService(const std::string& path, std::string_view list) {
    const ServiceId service = readService(path);
    if (listOfService(service) != list)
        throw Failure(Status::usage, fmt::format("{} has no {}", path, list), path);
    return service;
}

Output carryOutLists(Session& session, const AtmDevices& before, const std::vector<ListStep>& steps,
                     const ChangeOptions& options) {
    const PreparedLists lists(session, before);
    if (!lists.differ()) return lists.unchanged();
    ChangeRecord record;
    if (!options.fileOnly) {
        DriverChannel& channel = driverOf(session);
        DriverPhase phase(channel, options.dryRun ? DriverUse::planned : DriverUse::told, record);
        if (!sendAll(phase, channel, steps)) return lists.notTaken(record.requests, phase.sentences());
    }
    if (options.dryRun) return lists.preview(record.requests);
    return lists.save(std::move(record.requests), options);
}
