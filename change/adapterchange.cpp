#include "change/adapterchange.h"

#include "change/audit.h"
#include "change/copy.h"
#include "change/driverphase.h"
#include "change/history.h"
#include "change/restart.h"
#include "change/sent.h"
#include "config/recordrows.h"
#include "platform/debuglog.h"
#include "platform/ending.h"
#include "platform/host.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fmt/format.h>
#include <set>
#include <type_traits>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds patience = 5s;
constexpr std::size_t mostLines = 20;  // of a question
constexpr int mostTries = 20;          // as others write: each takes milliseconds

// Which services are given other settings, or other lists, than before.
ServiceSet differing(int adapter, const ServiceSet& among, const AtmDevices& before,
                     const AtmDevices& after) {
    ServiceSet set;
    forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto bit) {
        using Record = std::remove_cvref_t<decltype(record(before))>;
        Record was = record(before), is = record(after);
        bool differs = std::ranges::any_of(
            keyRows<Record>(), [&](const KeyRow<Record>& row) { return !sameField(row.field, was, is); });
        if constexpr (hasList<Record>) differs |= *listOf(was) != *listOf(is);
        bit(set) = differs && bit(among);
    });
    return set;
}

ServiceSet without(const ServiceSet& set, const ServiceSet& others) {
    ServiceSet rest;
    rest.lec = set.lec & ~others.lec;
    rest.les = set.les & ~others.les;
    rest.lecs = set.lecs && !others.lecs;
    rest.ip = set.ip && !others.ip;
    rest.signalling = set.signalling && !others.signalling;
    return rest;
}

template <class Record> bool isEnabled(const Record& record) {
    if constexpr (requires { record.enabled; })
        return record.enabled != 0;
    else
        return true;
}

// In the directories to which the links of files lead. Where the parameter file is they are searched at every
// lock.
void removeOtherDeadCopies(const std::vector<FileEdit>& edits, const platform::HostPath& record) {
    std::set<std::string> directories;
    for (const FileEdit& edit : edits) directories.insert(platform::directoryOf(edit.place).text);
    directories.erase(platform::directoryOf(record).text);
    for (const std::string& directory : directories) removeDeadCopies({directory}, CopiesOf::saves);
}

std::string answers(const char* ok, const char* cancel) {
    return fmt::format("\n\nOK {}. Cancel {}.", ok, cancel);
}

}  // namespace

// What is read, made and saved in one go.
struct AdapterChange::Round {
    Round(int number, std::shared_ptr<ReadCache> known)
        : adapter(number), editor(nullptr, false, devices, std::move(known)) {}

    void read(const AtmDevices& base) {
        readable = editor.ReadLink(adapter);
        theirs = devices;
        keepUnknown(adapter, editor, base, theirs);
    }

    int adapter;
    AtmDevices devices;  // the editor's
    DriverPdfEdit editor;
    AtmDevices theirs;  // as the files have it
    bool readable = false;
    HistoryEntry history;
};

bool ChangeResult::onlySectionsMissing() const {
    return save.error == 0 && std::ranges::all_of(failures, &SaveFailure::sectionMissing);
}

AdapterChange::AdapterChange(Configuration& configuration, ChangeOrder order)
    : configuration_(configuration), order_(std::move(order)) {
    const AtmDevices& mine = configuration_.mine();
    result_.record.display = order_.display;
    result_.record.requests = order_.requests;
    result_.changed = order_.changed.any() || !listChanges(order_.adapter, order_.before, mine).empty();
}

AdapterChange::~AdapterChange() {
    configuration_.unlock();
}

// After Cancel there is nothing to do unless a list was edited, now or before.
bool AdapterChange::hasWork() const {
    return order_.settings || !configuration_.unsavedLists(order_.adapter).empty();
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
        const int error = configuration_.lock(patience, failed);
        if (error == EWOULDBLOCK || (error == EINTR && platform::endAsked())) {
            if (!alone_ && error == EWOULDBLOCK) return lockQuestion();
            giveUp();
            return {};
        }
        Round round(order_.adapter, configuration_.known());
        const AtmDevices& base = configuration_.base();
        if (error == 0) round.read(base);
        merge_ = mergeAdapter(order_.adapter, base, configuration_.mine(),
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

void AdapterChange::send() {
    ServiceSet due = without(order_.changed, merge_.givenUp);
    // A second time only what has become different since, also what was given up after it had been sent.
    if (sent_) due = differing(order_.adapter, due | sentServices_, *sent_, merge_.devices);
    sent_ = merge_.devices;
    sentServices_ = sentServices_ | due;
    if (!due.any() || driverStopped_) return;
    DriverChannel channel;
    if (order_.driver) channel.open(O_RDWR);
    DriverPhase phase(channel, order_.driver, result_.record);
    restartServices(order_.adapter, merge_.devices, due, phase, channel);
    const std::vector<std::string> sentences = phase.sentences();
    result_.driver.insert(result_.driver.end(), sentences.begin(), sentences.end());
    result_.tookAny |= phase.tookAny();
    driverStopped_ = phase.stopped();
    if (order_.driver) noteSent(due);
}

// What the driver has taken is kept; where it has not answered nothing is known any more.
void AdapterChange::noteSent(const ServiceSet& due) {
    const auto& requests = result_.record.requests;
    const DriverIdentity identity{platform::bootId(), configuration_.driverRevision,
                                  configuration_.mine().lec[asIndex(order_.adapter)][0].mac.GetFMacAddress()};
    if (configuration_.forgetLostDriver()) return;
    LastSent sent;
    sent.load();
    bool unknown = false;
    forEachService(order_.adapter, [&](const ServiceName& name, auto record, const std::string&, auto bit) {
        if (!bit(due)) return;
        const auto last =
            std::ranges::find_if(requests.rbegin(), requests.rend(), [&](const SentRequest& request) {
                return request.service == name.path && request.subject.empty();
            });
        if (last == requests.rend()) return;
        unknown |= last->answer == RequestResult::unanswered;
        if (last->answer != RequestResult::taken) return;
        const auto& settings = record(merge_.devices);
        std::map<std::string, std::string> values;
        sent.forgetService(order_.adapter, name.path);
        for (const auto& row : keyRows<std::remove_cvref_t<decltype(settings)>>())
            // A service is stopped without its settings.
            if (isEnabled(settings) || std::string_view(row.name) == "enabled")
                values[row.name] = valueText(row, settings, ValueForm::name);
        sent.note(order_.adapter, identity, name.path, values, std::time(nullptr));
    });
    if (unknown) sent.forget(order_.adapter, "A request got no answer.");
    sent.save();
}

void AdapterChange::save(Round& round) {
    round.devices = merge_.devices;
    if (order_.settings)
        round.editor.WriteLink(order_.adapter);
    else
        round.editor.WriteLists(order_.adapter);
    result_.failures = round.editor.failures();
    result_.save = {};
    // Everything or nothing; what is not known cannot be part of it.
    if (std::ranges::any_of(result_.failures, &SaveFailure::unknown)) {
        result_.save.state = SaveOutcome::State::asBefore;
        return;
    }

    const auto changes = round.editor.files().edits();
    std::vector<FileEdit> edits;
    ConfigFiles& files = round.editor.files();
    const char* parameters = PdfEdit::parameterFile;
    const bool always = order_.settings && round.readable;
    const auto add = [&](const std::string& name, std::optional<std::string_view> text) {
        const FileAsRead& file = files.read(name);
        edits.push_back({name, files.place(name), file.exists, text, file.content});
    };
    if (always) add(parameters, files.now(parameters));
    for (const auto& [name, text] : changes) {
        if (!always || name != parameters) add(name, text);
    }
    if (edits.empty()) return;
    for (const FileEdit& edit : edits)
        if (const FileAsRead& file = files.read(edit.name); file.exists && file.status.st_nlink > 1)
            tvlog << fmt::format("{} Has {} Names, The Others Keep Its Old Content", edit.name,
                                 file.status.st_nlink)
                  << std::endl;
    removeOtherDeadCopies(edits, Configuration::saveRecord(files.place(parameters)));
    const auto stands = [&](const FileEdit& edit) { return files.standsAsRead(edit.name); };
    if (!changes.empty() && std::ranges::all_of(edits, stands)) keepHistory(round, edits);
    result_.save = replaceFiles(Configuration::saveRecord(files.place(parameters)), edits,
                                [&] { return files.standAsRead(); });
    result_.wrote = result_.save.state == SaveOutcome::State::done && !changes.empty();
    if (result_.save.error) fail(result_.save.file, std::strerror(result_.save.error));
}

// A file gets a further name in the history, which is no change of it.
void AdapterChange::keepHistory(Round& round, const std::vector<FileEdit>& edits) {
    std::vector<FileAtRisk> files;
    files.reserve(edits.size());
    for (const FileEdit& edit : edits) files.push_back({edit.name, edit.place});
    round.history.begin(files);
    for (const FileEdit& edit : edits) round.editor.files().takeTimeOfChange(edit.name);
}

// The history, and the lines for syslog.
void AdapterChange::record(Round& round) {
    using State = SaveOutcome::State;
    ChangeRecord& record = result_.record;
    record.program = configuration_.program();
    record.notes = result_.notes;
    for (const std::string& sentence : result_.driver) record.notes.push_back(sentence);
    for (const SaveFailure& failure : result_.failures) {
        const std::string text = failure.file + ": " + failure.reason;
        record.notes.push_back(text);
        if (!result_.wrote && record.result == "ok") record.result = text;
    }
    if (result_.wrote || result_.save.state == State::unfinished)
        round.history.finish(record);
    else
        round.history.drop();
    audit(record, round.history.number());
}

// Both the records and what the files are known to have.
void AdapterChange::takeResult(Round& round) {
    AtmDevices &base = configuration_.base(), &mine = configuration_.mine();
    const AtmDevices written = round.devices;  // with the file names that were made up
    if (round.readable) {
        round.devices = AtmDevices();
        if (result_.wrote) {
            round.editor.ReadTexts(order_.adapter);
            keepUnknown(order_.adapter, round.editor, base, round.devices);
        } else {
            round.devices = round.theirs;
        }
        noteUnsaved(round.editor.lacking(), written);
        if (!order_.settings) takeOver(order_.adapter, base, mine, round.theirs);
    }
    noteWithoutTable(round.readable ? written : merge_.devices);
    forEachService(order_.adapter, [&](const ServiceName&, auto record, const std::string&, auto) {
        using Record = std::remove_cvref_t<decltype(record(mine))>;
        Record &was = record(base), &is = record(mine),
               now = record(round.readable ? written : merge_.devices),
               file = record(round.readable ? round.devices : base);
        if (order_.settings) {
            is = now;
            was = file;
        } else if constexpr (hasList<Record>) {
            *listOf(is) = *listOf(now);
            *listOf(was) = *listOf(file);
        }
    });
    ChangeRecord& record = result_.record;
    record.takenOverKeys = merge_.takenOver;
    record.takenOverLists = merge_.takenOverLists;
    for (const KeyChange& key : record.takenOverKeys)
        tvlog << fmt::format("Changed By Others - {} From {} To {}", key.key, key.before, key.after)
              << std::endl;
    for (const ListChange& list : record.takenOverLists)
        tvlog << fmt::format("Changed By Others - {} {} Added {} Removed", list.key, list.added.size(),
                             list.removed.size())
              << std::endl;
    for (const std::string& dropped : round.editor.dropped())
        if (result_.wrote) result_.notes.push_back(dropped);
    noteDifferentLists();
    for (std::string& note : configuration_.takeNotes()) result_.notes.push_back(std::move(note));
    if (round.readable) {
        const AtmDevices& now = result_.wrote ? round.devices : written;
        record.keys = keyChanges(order_.adapter, round.theirs, now);
        record.lists = listChanges(order_.adapter, round.theirs, now);
    }
    this->record(round);
    done_ = true;
}

void AdapterChange::noteWithoutTable(const AtmDevices& devices) {
    for (std::size_t m = 0; m < asIndex(lesCount); ++m) {
        const AtmLES& les = devices.les[asIndex(order_.adapter)][m];
        if (!les.clients.empty() && les.clientFile.empty())
            result_.withoutTable.push_back(lesName(order_.adapter, m).words);
    }
}

// The driver has what the user made of a list, unless the service was restarted since.
void AdapterChange::noteDifferentLists() {
    std::set<std::string> restarted;
    forEachService(order_.adapter, [&](const ServiceName& name, auto, const std::string&, auto bit) {
        if (bit(sentServices_)) restarted.insert(name.words);
    });
    for (const auto& [service, entry] : merge_.entriesGivenUp)
        if (order_.driver && !restarted.contains(service))
            result_.notes.push_back(
                fmt::format("{} of {} is now as in the file. The driver has your change until the service is "
                            "restarted.",
                            entry, service));
}

// Of what the user changed: keys that the file has no line for, and names that it does not give back whole.
void AdapterChange::noteUnsaved(const DriverPdfEdit::Lacking& lacking, const AtmDevices& written) {
    if (!order_.settings) return;
    forEachService(
        order_.adapter, [&](const ServiceName& name, auto record, const std::string& section, auto) {
            const auto &was = record(order_.before), &is = record(written);
            for (const auto& row : keyRows<std::remove_cvref_t<decltype(was)>>()) {
                if (sameField(row.field, was, is)) continue;
                const std::string value = valueText(row, is, ValueForm::words);
                if (lacking.contains({section, row.key}))
                    result_.notes.push_back(fmt::format("{} {}: {} has no {}. The change is not in the file.",
                                                        name.words, row.words, section, row.key));
                else if (std::string_view(row.key) == "ElanName" && value.size() >= asIndex(row.readLength))
                    result_.notes.push_back(fmt::format("{} {}: only the first {} characters are read back.",
                                                        name.words, row.words, row.readLength - 1));
            }
        });
}

void AdapterChange::fail(const std::string& file, const std::string& reason) {
    result_.failures.push_back({file, reason});
}

std::optional<Question> AdapterChange::lockQuestion() {
    asked_ = Ask::lock;
    const bool lists = !configuration_.unsavedLists(order_.adapter).empty();
    return Question{"Configuration Busy",
                    fmt::format("The configuration is being changed by {}.{}{}", configuration_.holder(),
                                answers("waits for it again",
                                        order_.settings ? "gives your changes up" : "saves your lists later"),
                                order_.settings && lists
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
    result_.record.program = configuration_.program();
    audit(result_.record, "none");
}

// The driver has the list edits, which wait for the next save.
void AdapterChange::giveUp() {
    result_.givenUp = true;
    auditRequests();
    forEachService(order_.adapter, [&](const ServiceName&, auto record, const std::string&, auto) {
        auto& mine = record(configuration_.mine());
        auto before = record(order_.before);
        if constexpr (hasList<std::remove_cvref_t<decltype(before)>>) *listOf(before) = *listOf(mine);
        mine = before;
    });
}

void AdapterChange::finishAlone() {
    alone_ = true;
    if (!result_.givenUp) run();
}
