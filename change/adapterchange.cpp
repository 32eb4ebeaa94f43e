#include "change/adapterchange.h"

#include "change/audit.h"
#include "change/changeround.h"
#include "platform/ending.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <type_traits>

namespace {

constexpr std::size_t mostLines = 20;  // of a question
constexpr int mostTries = 20;          // as others write: each takes milliseconds

std::string answers(std::string_view ok, std::string_view cancel) {
    return fmt::format("\n\nOK {}. Cancel {}.", ok, cancel);
}

}  // namespace

bool ChangeResult::onlySectionsMissing() const {
    return save.error == 0 && std::ranges::all_of(failures, &SaveFailure::sectionMissing);
}

bool ChangeResult::tookAny() const {
    return std::ranges::any_of(record.requests,
                               [](const SentRequest& sent) { return sent.answer == RequestResult::taken; });
}

AdapterChange::AdapterChange(Configuration& configuration, ChangeOrder order)
    : configuration_(configuration), order_(std::move(order)) {
    const AtmDevices& mine = configuration_.mine();
    result_.record.display = order_.display;
    result_.record.program = configuration_.program();
    result_.record.from = order_.from.empty() ? order_.display : order_.from;
    result_.record.note = order_.note;
    result_.record.requests = order_.requests;
    result_.changed = order_.changed.any() || !listChanges(order_.adapters, order_.before, mine).empty();
}

AdapterChange::~AdapterChange() {
    configuration_.unlock();
}

// After Cancel there is nothing to do unless a list was edited, now or before.
bool AdapterChange::hasWork() const {
    return order_.settings || !unsavedLists().empty();
}

std::vector<std::string> AdapterChange::unsavedLists() const {
    std::vector<std::string> all;
    for (const int adapter : order_.adapters)
        for (std::string& list : configuration_.unsavedLists(adapter)) all.push_back(std::move(list));
    return all;
}

bool AdapterChange::preview() {
    Round round(order_.adapters, configuration_.known());
    const AtmDevices& base = configuration_.base();
    round.read(base);
    if (!round.readable) return false;
    merge_ = mergeAdapters(order_.adapters, base, configuration_.mine(), round.theirs, order_.settings,
                           decisions_);
    if (order_.driver) tell(order_.changed, DriverUse::planned);
    result_.record.keys = keyChanges(order_.adapters, round.theirs, merge_.devices);
    result_.record.lists = listChanges(order_.adapters, round.theirs, merge_.devices);
    return true;
}

std::optional<Question> AdapterChange::run() {
    asked_ = Ask::nothing;
    if (done_ || result_.givenUp) return {};
    if (!hasWork()) {
        noteWithoutTable(configuration_.mine());
        auditRequests();
        done_ = true;
        return {};
    }
    for (int tries = 1;; ++tries) {
        std::string failed;
        const int error = configuration_.lock(patience_, failed);
        if (error == EWOULDBLOCK || (error == EINTR && platform::endAsked())) {
            if (!alone_ && error == EWOULDBLOCK) return lockQuestion();
            giveUp();
            return {};
        }
        Round round(order_.adapters, configuration_.known());
        const AtmDevices& base = configuration_.base();
        if (error == 0) round.read(base);
        merge_ = mergeAdapters(order_.adapters, base, configuration_.mine(),
                               round.readable ? round.theirs : base, order_.settings, decisions_);
        if (!merge_.conflicts.empty() && !alone_) {
            configuration_.unlock();
            return conflictQuestion();
        }
        if (order_.settings) send();
        result_.failures.clear();
        if (error)
            fail(failed, std::strerror(error));
        else
            save(round);
        if (result_.save.state == SaveOutcome::State::outdated) {
            round.history.drop();
            if (tries < mostTries) continue;
            fail(PdfEdit::parameterFile, "others change the files again and again");
        }
        takeResult(round);
        configuration_.unlock();
        return {};
    }
}

void AdapterChange::fail(const std::string& file, const std::string& reason) {
    result_.failures.push_back({file, reason});
}

std::optional<Question> AdapterChange::lockQuestion() {
    asked_ = Ask::lock;
    const std::vector<std::string> lists = unsavedLists();
    const std::string cancel =
        order_.last       ? fmt::format("ends without saving the lists of {}", fmt::join(lists, ", "))
        : order_.settings ? "gives your changes up"
                          : "saves your lists later";
    return Question{"Configuration Busy",
                    fmt::format("The configuration is being changed by {}.{}{}", configuration_.holder(),
                                answers("waits for it again", cancel),
                                order_.settings && !lists.empty()
                                    ? "\nWhat the driver has of your lists already is saved later."
                                    : "")};
}

std::optional<Question> AdapterChange::conflictQuestion() {
    asked_ = Ask::conflicts;
    std::string text = "Somebody else has changed the same:\n";
    for (std::size_t i = 0; i < std::min(mostLines, merge_.conflicts.size()); ++i)
        text += '\n' + merge_.conflicts[i].line;
    if (merge_.conflicts.size() > mostLines)
        text += fmt::format("\nand {} more", merge_.conflicts.size() - mostLines);
    return Question{"Configuration Conflict", text + answers("takes yours", "takes the file's")};
}

void AdapterChange::answer(bool ok) {
    if (asked_ == Ask::conflicts)
        for (const Conflict& conflict : merge_.conflicts) decisions_[conflict] = ok;
    if (asked_ == Ask::lock && !ok) giveUp();
}

// What the dialog has sent, when nothing is saved that would keep it.
void AdapterChange::auditRequests() {
    audit(result_.record, "none");
}

// The driver has the list edits, which wait for the next save.
void AdapterChange::giveUp() {
    result_.givenUp = true;
    lookAhead(sentServices_, result_.record.requests.size());
    noteDriverAhead();
    auditRequests();
    forEachService(order_.adapters, [&](const ServiceName&, auto record, const std::string&, auto) {
        auto& mine = record(configuration_.mine());
        auto before = record(order_.before);
        if constexpr (hasList<std::remove_cvref_t<decltype(before)>>) *listOf(before) = *listOf(mine);
        mine = before;
    });
}

void AdapterChange::finishAlone(std::chrono::milliseconds patience) {
    alone_ = true;
    patience_ = patience;
    if (!result_.givenUp) run();
}
