#include "ctl/changing.h"

#include "change/takeback.h"
#include "config/recordrows.h"
#include "ctl/differences.h"
#include "ctl/guard.h"
#include "ctl/paths.h"
#include "platform/safetext.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <unistd.h>

namespace {

constexpr std::array allAdapters{0, 1, 2, 3};

}  // namespace

// What the command changes, and where.
struct Plan {
    std::vector<Difference> differences;
    std::vector<int> adapters;
    std::vector<std::string> services;  // paths; the order of list entries counts, too
    ServiceSets restarted;

    Plan(const AtmDevices& before, const AtmDevices& after)
        : restarted(changedServices(allAdapters, before, after)) {
        for (const int adapter : allAdapters) {
            const std::size_t known = services.size();
            for (const ServiceId& service : servicesOf(adapter)) add(service, before, after);
            if (services.size() > known) adapters.push_back(adapter);
        }
    }

    bool any() const { return !adapters.empty(); }

  private:
    void add(const ServiceId& service, const AtmDevices& before, const AtmDevices& after) {
        const std::vector<Difference> found = ::differences(service, before, after);
        differences.insert(differences.end(), found.begin(), found.end());
        bool changed = !found.empty();
        withRecord(service, [&](auto record) {
            const auto &was = record(before), &is = record(after);
            if constexpr (hasList<std::remove_cvref_t<decltype(was)>>) changed |= *listOf(was) != *listOf(is);
        });
        if (changed) services.push_back(service.name().path);
    }
};

namespace {

// Writes into texts alone what the change would write, to see what the files do not take.
ConfigFiles rehearse(Session& session, const Plan& plan, const AtmDevices& before) {
    AtmDevices devices;
    DriverPdfEdit editor(nullptr, false, devices, std::make_shared<ReadCache>());
    editor.ReadLinks(plan.adapters);
    copyAdapters(plan.adapters, session.devices, devices);
    for (const int adapter : plan.adapters)
        if (!session.hasSection(adapter))
            throw Failure(Status::notThere,
                          fmt::format("adapter{} has no section in {}", adapter + 1, PdfEdit::parameterFile),
                          fmt::format("adapter{}", adapter + 1));
    editor.WriteLinks(plan.adapters);
    for (const SaveFailure& failure : editor.failures())
        throw Failure(Status::notDone, fmt::format("{}: {}", failure.file, failure.reason), failure.file);
    for (const int adapter : plan.adapters)
        for (const ServiceId& service : servicesOf(adapter))
            withRecord(service, [&](auto record) {
                const auto &was = record(before), &is = record(session.devices);
                using Record = std::remove_cvref_t<decltype(was)>;
                const NamedService& named = namedServices(adapter)[service.service];
                for (const KeyRow<Record>& row : keyRows<Record>()) {
                    if (sameField(row.field, was, is) || !editor.lacking().contains({named.section, row.key}))
                        continue;
                    const std::string where = fmt::format("{}.{}", named.name.path, row.name);
                    throw Failure(Status::wrongValue,
                                  fmt::format("{}: section {} has no {}", where, named.section, row.key),
                                  where);
                }
                // Restarted, the service would run without it.
                const std::string unknown = session.unknownListOf(service);
                if (!unknown.empty() && !sameSettings(was, is))
                    throw Failure(Status::wrongValue,
                                  fmt::format("{}: its list in {} cannot be read", named.name.path, unknown),
                                  unknown);
                if constexpr (requires { is.clientFile; })
                    if (!is.clients.empty() && is.clientFile.empty() && is.clients != was.clients)
                        throw Failure(
                            Status::wrongValue,
                            fmt::format("{}: the section names no client table (ElanTbl)", named.name.path),
                            named.name.path + ".clients");
            });
    return std::move(editor.files());
}

Output begun(const Plan& plan) {
    Output output;
    Tree changes = Tree::array();
    for (const Difference& difference : plan.differences)
        changes.add(differenceTree(difference, "old", "new"));
    output.tree.put("changes", std::move(changes));
    return output;
}

// `change`: its number; "none" when the history does not have it; empty when nothing has changed.
void end(Output& output, const std::vector<SentRequest>& requests, bool driver, const std::string& change,
         const std::string& result) {
    Tree all = Tree::array();
    for (const SentRequest& request : requests) all.add(requestTree(request, result == "dry run"));
    output.tree.put("requests", std::move(all));
    output.tree.put("driver", {driver, {}});
    const bool numbered = !change.empty() && change != "none";
    const std::string line = result == "dry run" ? result : change.empty() ? "no change" : "change " + change;
    output.tree.put("change", {numbered ? Json(std::stoul(change)) : Json(), {}});
    output.tree.put("result", {result, {line}});
}

// The driver's part of the outcome.
void judge(Output& output, const ChangeResult& result) {
    const RequestResult answer = driverAnswer(result.record);
    if (answer == RequestResult::taken) return;
    output.status = answer == RequestResult::refused ? Status::refused : Status::silent;
    output.message = result.driver.empty() ? "the driver did not take it all" : result.driver.front();
    for (std::size_t i = 1; i < result.driver.size(); ++i) output.warnings.push_back(result.driver[i]);
}

const char* resultWord(Status status) {
    return status == Status::silent ? "silent" : status == Status::refused ? "refused" : "ok";
}

// Why the files stay as they are; nothing: they do not.
std::optional<Failure> failureOf(const ChangeResult& result, bool conflict) {
    if (conflict) return Failure(Status::changedMeanwhile, "somebody else has changed the same meanwhile");
    if (result.failures.empty() && result.save.state == SaveOutcome::State::done) return {};
    if (result.failures.empty()) return Failure(Status::notDone, "the save failed");
    const SaveFailure& first = result.failures.front();
    return Failure(Status::notDone, fmt::format("{}: {}", first.file, first.reason), first.file);
}

// The driver has taken what the files will not have: it gets their settings again. False: not all of it.
// `guarded`: the change that waits for its confirmation is this one.
bool restoreDriver(Session& session, const Plan& plan, bool guarded) {
    ChangeOrder order{.adapters = plan.adapters,
                      .changed = plan.restarted,
                      .before = session.devices,
                      .driver = true,
                      .tellLists = true};
    if (!session.configuration.read()) return false;
    session.configuration.passPending = guarded;
    AdapterChange change(session.configuration, std::move(order));
    change.finishAlone();
    return change.result().driver.empty() && !change.result().givenUp;
}

Output make(Session& session, const Plan& plan, ChangeOrder order) {
    Output output = begun(plan);
    const bool driver = order.driver, tells = driver && order.settings, guarded = order.guarded;
    AdapterChange change(session.configuration, std::move(order));
    const bool conflict = change.run().has_value();
    const ChangeResult& result = change.result();
    if (const auto failure = failureOf(result, conflict)) {
        if (!tells || !result.tookAny()) throw *failure;
        const char* what = restoreDriver(session, plan, guarded)
                               ? "the driver has the settings of the files again"
                               : "the driver may have it all the same: see tvctl diff";
        throw Failure(failure->status(), fmt::format("{}; {}", failure->what(), what), failure->where());
    }
    if (driver) judge(output, result);
    for (const std::string& note : result.notes) output.warnings.push_back(note);
    end(output, result.record.requests, driver, result.wrote ? result.change : "", resultWord(output.status));
    if (result.wrote && result.change == "none")
        output.warnings.emplace_back("the history does not have this change: see the system log");
    return output;
}

Output nothing(const Plan& plan) {
    Output output = begun(plan);
    end(output, {}, false, "", "no change");
    return output;
}

ChangeOrder orderFor(Session& session, const Plan& plan, const AtmDevices& before,
                     const ChangeOptions& options) {
    bool driver = false;
    if (!options.fileOnly) {
        session.discovery();
        driver = session.driverIsThere();  // one that does not answer is told all the same, and found silent
    }
    return {.adapters = plan.adapters,
            .changed = plan.restarted,
            .before = before,
            .driver = driver,
            .tellLists = true,
            .from = userPlace(),
            .note = options.note};
}

Output execute(Session& session, const Plan& plan, ChangeOrder order, const ChangeOptions& options) {
    const bool driver = order.driver;
    if (options.dryRun) {
        Output output = begun(plan);
        AdapterChange change(session.configuration, std::move(order));
        change.preview();
        end(output, change.result().record.requests, driver, "", "dry run");
        output.status = Status::different;
        return output;
    }
    GuardedChange guard(session, options.confirm, plan.services, driver);
    order.guarded = options.confirm > 0;
    Output output = make(session, plan, std::move(order));
    guard.done();
    if (!driver && !options.fileOnly) output.warnings.emplace_back("no driver: saved to the files only");
    return output;
}

}  // namespace

void ChangeOptions::add(CLI::App& command, bool withConfirm) {
    command.add_flag("--file-only", fileOnly, "Save to the files only; the driver is told nothing");
    command.add_flag("--dry-run", dryRun, "Show what would be changed and sent; change nothing");
    if (withConfirm)
        command
            .add_option("--confirm", confirm, "Take the change back after so many seconds, unless confirmed")
            ->check(secondsFrom(1));
    command.add_option("--note", note, "Words for the history");
}

void readFor(Session& session, bool dryRun) {
    dryRun ? session.read() : session.readForChange();
}

Tree requestTree(const SentRequest& request, bool planned) {
    const bool answered = request.answer == RequestResult::taken || request.answer == RequestResult::refused;
    std::string line = fmt::format("request {} {}", request.request, request.service);
    if (request.answer == RequestResult::refused) line += fmt::format(" refused {}", request.resp);
    if (request.answer == RequestResult::unanswered) line += " no answer";
    if (request.answer == RequestResult::notSent && !planned) line += " not sent";
    Tree tree;
    tree.put("name", {request.request, {line}});
    tree.put("where", {request.service, {}});
    tree.put("resp", {answered ? Json(request.resp) : Json(), {}});
    return tree;
}

ConfigFiles filesAfter(Session& session, const AtmDevices& before) {
    return rehearse(session, Plan(before, session.devices), before);
}

Output carryOut(Session& session, const AtmDevices& before, const ChangeOptions& options) {
    const Plan plan(before, session.devices);
    if (plan.any()) rehearse(session, plan, before);
    session.needLock();
    if (!plan.any()) return nothing(plan);
    return execute(session, plan, orderFor(session, plan, before, options), options);
}

Output putBack(Session& session, std::vector<PastFile> files, const ChangeOptions& options) {
    const AtmDevices before = session.devices;
    if (!recordsWith(files, session.devices))
        throw Failure(Status::wrongValue, fmt::format("{} as it was cannot be read", PdfEdit::parameterFile));
    const Plan plan(before, session.devices);
    if (files.empty()) return nothing(plan);
    ChangeOrder order = orderFor(session, plan, before, options);
    order.adapters.assign(allAdapters.begin(), allAdapters.end());
    order.restored = std::move(files);
    return execute(session, plan, std::move(order), options);
}

PreparedLists::PreparedLists(Session& session, const AtmDevices& before)
    : session_(session), before_(before), plan_(std::make_unique<Plan>(before, session.devices)) {
    if (plan_->any()) rehearse(session, *plan_, before);
}

PreparedLists::~PreparedLists() = default;

bool PreparedLists::differ() const {
    return plan_->any();
}

Output PreparedLists::unchanged() const {
    return nothing(*plan_);
}

Output PreparedLists::preview(const std::vector<SentRequest>& requests) const {
    Output output = begun(*plan_);
    end(output, requests, !requests.empty(), "", "dry run");
    output.status = Status::different;
    return output;
}

Output PreparedLists::notTaken(const std::vector<SentRequest>& requests,
                               const std::vector<DriverSentence>& why) const {
    ChangeResult result;
    result.record.requests = requests;
    for (const DriverSentence& sentence : why) result.driver.push_back(sentence.text);
    Output output = begun(*plan_);
    judge(output, result);
    end(output, requests, true, "", resultWord(output.status));
    return output;
}

Output PreparedLists::save(std::vector<SentRequest> requests, const ChangeOptions& options) const {
    const bool driver = !requests.empty();
    return make(session_, *plan_,
                {.adapters = plan_->adapters,
                 .settings = false,
                 .before = before_,
                 .driver = driver,
                 .requests = std::move(requests),
                 .from = userPlace(),
                 .note = options.note});
}

std::string userPlace() {
    constexpr std::size_t longest = 64;
    if (const char* connection = std::getenv("SSH_CONNECTION")) {
        const std::string text = connection;
        return platform::escaped(text.substr(0, std::min(text.find(' '), longest)));
    }
    const char* terminal = ::ttyname(STDIN_FILENO);
    return terminal ? terminal : "-";
}
