#include "ctl/listchange.h"

#include "ctl/settings.h"

#include <fmt/format.h>
#include <span>

namespace {

DriverChannel& driverOf(Session& session) {
    session.discovery();
    if (!session.channel()) throw session.noDriver("; --file-only changes the files alone");
    return session.channel();
}

void undo(DriverPhase& phase, DriverChannel& channel, std::span<const ListStep> done) {
    for (std::size_t i = done.size(); i-- > 0;) done[i].undo(phase, channel);
}

// Sends them one after the other. False: one was not taken, and nothing has changed.
bool sendAll(DriverPhase& phase, DriverChannel& channel, std::span<const ListStep> steps) {
    for (std::size_t done = 0; done < steps.size(); ++done) {
        if (steps[done].send(phase, channel) == RequestResult::taken) continue;
        undo(phase, channel, steps.first(done));
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

void readListFor(Session& session, const ServiceId& service, const ChangeOptions& options) {
    readFor(session, options.dryRun);
    if (const std::string file = session.unknownListOf(service); !file.empty())
        throw Failure(Status::wrongValue, fmt::format("{} cannot be read", file), file);
}

Output carryOutLists(Session& session, const AtmDevices& before, const std::vector<ListStep>& steps,
                     const ChangeOptions& options) {
    const PreparedLists lists(session, before);
    session.needLock();
    if (!lists.differ()) return lists.unchanged();
    if (options.fileOnly) return options.dryRun ? lists.preview({}) : lists.save({}, options);
    ChangeRecord record;
    DriverChannel& channel = driverOf(session);
    DriverPhase phase(channel, options.dryRun ? DriverUse::planned : DriverUse::told, record);
    if (!sendAll(phase, channel, steps)) return lists.notTaken(record.requests, phase.sentences());
    if (options.dryRun) return lists.preview(record.requests);
    try {
        return lists.save(record.requests, options);
    } catch (const Failure&) {
        undo(phase, channel, steps);  // the driver has it, and the files do not
        throw;
    }
}
