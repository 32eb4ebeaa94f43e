// client add, delete, move: which clients the configuration server directs to a LES.
#include "ctl/entries.h"
#include "ctl/listchange.h"
#include "ctl/settings.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace {

using Servers = std::array<AtmLES, lesCount>;

ListStep::Send sender(int adapter, std::size_t les, ListEdit edit, const esiSelector& client) {
    return [=](DriverPhase& phase, DriverChannel& channel) {
        return sendListEdit(adapter, les, edit, client, phase, channel);
    };
}

// The edits of one command.
struct Edits {
    int adapter;
    std::size_t les;  // that the command names
    Servers& servers;
    std::vector<ListStep> steps = {};

    bool has(std::size_t server, const esiSelector& client) const {
        return std::ranges::count(servers.at(server).clients, client) > 0;
    }

    void add(const esiSelector& client) {
        if (has(les, client)) return;
        servers.at(les).clients.push_back(client);
        steps.push_back(
            {sender(adapter, les, ListEdit::add, client), sender(adapter, les, ListEdit::remove, client)});
    }

    void remove(std::size_t server, const esiSelector& client) {
        std::erase(servers.at(server).clients, client);
        steps.push_back({sender(adapter, server, ListEdit::remove, client),
                         sender(adapter, server, ListEdit::add, client)});
    }

    void removeHere(const esiSelector& client) {
        if (!has(les, client)) noSuch(client, lesName(adapter, les).path);
        remove(les, client);
    }

    void moveHere(const esiSelector& client) {
        std::size_t from = 0;
        while (from < servers.size() && (from == les || !has(from, client))) ++from;
        if (from == servers.size()) {
            if (has(les, client)) return;
            noSuch(client, fmt::format("adapter{}", adapter + 1));
        }
        remove(from, client);
        add(client);
    }

    [[noreturn]] static void noSuch(const esiSelector& client, const std::string& where) {
        throw Failure(Status::notThere, fmt::format("{} has no client {}", where, entryWords(client)), where);
    }
};

enum class Verb { add, remove, move };

struct Given {
    std::string path;
    std::vector<std::string> clients;
    ChangeOptions options;
    Verb verb = Verb::add;
};

Output run(Session& session, const Given& given) {
    ServiceId service;
    std::vector<esiSelector> clients;
    FirstFailure first;
    if (!given.options.dryRun) first.of(requireRoot);
    first.of([&] { service = readListService(given.path, "clients"); });
    for (const std::string& text : given.clients) first.of([&] { clients.push_back(readClient(text)); });
    first.raise();
    readListFor(session, service, given.options);
    const AtmDevices before = session.devices;
    Edits edits{service.adapter, service.service - firstLes, session.devices.les[asIndex(service.adapter)]};
    for (const esiSelector& client : clients) {
        if (given.verb == Verb::add) edits.add(client);
        if (given.verb == Verb::remove) edits.removeHere(client);
        if (given.verb == Verb::move) edits.moveHere(client);
    }
    return carryOutLists(session, before, edits.steps, given.options);
}

}  // namespace

Run addClient(CLI::App& command) {
    static constexpr struct {
        const char *name, *summary;
        Verb verb;
    } verbs[] = {
        {"add", "Further clients", Verb::add},
        {"delete", "Take clients away", Verb::remove},
        {"move", "Clients of the other LESs become those of this one", Verb::move},
    };
    const auto given = std::make_shared<Given>();
    for (const auto& verb : verbs) {
        CLI::App* sub = addListVerb(command, verb.name, verb.summary);
        sub->add_option("PATH", given->path, "adapter1/les3")->required();
        sub->add_option("CLIENT", given->clients, "ESI and selector, 00:a0:3e:00:00:01-00")->required();
        given->options.add(*sub, false);
        sub->final_callback([given, chosen = verb.verb] { given->verb = chosen; });
    }
    return [given](Session& session) { return run(session, *given); };
}
