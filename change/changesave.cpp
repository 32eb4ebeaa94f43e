// What a change writes, and what its result says of that.
#include "change/audit.h"
#include "change/changeround.h"
#include "change/copy.h"
#include "config/recordrows.h"
#include "platform/debuglog.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <set>
#include <type_traits>
#include <utility>

namespace {

// In the directories to which the links of files lead. Where the parameter file is they are searched at every
// lock.
void removeOtherDeadCopies(const std::vector<FileEdit>& edits, const platform::HostPath& record) {
    std::set<std::string> directories;
    for (const FileEdit& edit : edits) directories.insert(platform::directoryOf(edit.place).text);
    directories.erase(platform::directoryOf(record).text);
    for (const std::string& directory : directories) removeDeadCopies({directory}, CopiesOf::saves);
}

// Mode and owner that the file is given: its own, or those of the file that it is made like. Empty for a new
// file and a removed one.
std::string rightsOf(const FileEdit& edit) {
    struct stat status {};
    if (!edit.content) return {};
    if (!edit.like) return edit.exists ? rightsAt(edit.place) : "";
    return platform::files().status(edit.like->descriptor(), status) == 0 ? rightsText(status) : "";
}

}  // namespace

void AdapterChange::save(Round& round) {
    copyAdapters(order_.adapters, merge_.devices, round.devices);
    if (!order_.restored.empty())
        restore(round.editor);
    else if (order_.settings)
        round.editor.WriteLinks(order_.adapters);
    else
        round.editor.WriteLists(order_.adapters);
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
    const bool always = order_.settings && round.readable && order_.restored.empty();
    const auto add = [&](const std::string& name, std::optional<std::string_view> text) {
        const FileAsRead& file = files.read(name);
        edits.push_back({name, files.place(name), file.exists, text, file.content});
    };
    if (always) add(parameters, files.now(parameters));
    for (const PastFile& file : order_.restored) {
        add(file.name, file.content);
        edits.back().like = file.like;
    }
    for (const auto& [name, text] : changes) {
        if (order_.restored.empty() && (!always || name != parameters)) add(name, text);
    }
    if (edits.empty()) return;
    for (const FileEdit& edit : edits)
        if (const FileAsRead& file = files.read(edit.name); file.exists && file.status.st_nlink > 1)
            tvlog << fmt::format("{} Has {} Names, The Others Keep Its Old Content", edit.name,
                                 file.status.st_nlink)
                  << std::endl;
    removeOtherDeadCopies(edits, Configuration::saveRecord(files.place(parameters)));
    const auto stands = [&](const FileEdit& edit) { return files.standsAsRead(edit.name); };
    const bool different = !changes.empty() || !order_.restored.empty();
    if (different && std::ranges::all_of(edits, stands)) keepHistory(round, edits);
    result_.save = replaceFiles(Configuration::saveRecord(files.place(parameters)), edits,
                                [&] { return files.standAsRead(); });
    result_.wrote = result_.save.state == SaveOutcome::State::done && different;
    if (result_.save.error) fail(result_.save.file, std::strerror(result_.save.error));
}

void AdapterChange::restore(DriverPdfEdit& editor) const {
    for (const PastFile& file : order_.restored) editor.replaceText(file.name, file.content);
}

// A file gets a further name in the history, which is no change of it.
void AdapterChange::keepHistory(Round& round, const std::vector<FileEdit>& edits) {
    std::vector<FileAtRisk> files;
    files.reserve(edits.size());
    for (const FileEdit& edit : edits) files.push_back({edit.name, edit.place, edit.content, rightsOf(edit)});
    round.history.begin(files);
    if (order_.guarded) round.history.announce(files, result_.record);
    for (const FileEdit& edit : edits) round.editor.files().takeTimeOfChange(edit.name);
}

// The history, and the lines for syslog.
void AdapterChange::record(Round& round) {
    using State = SaveOutcome::State;
    ChangeRecord& record = result_.record;
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
    result_.change = round.history.number();
    audit(record, result_.change);
}

// Both the records and what the files are known to have.
void AdapterChange::takeResult(Round& round) {
    AtmDevices &base = configuration_.base(), &mine = configuration_.mine();
    const AtmDevices written = std::exchange(round.devices, {});  // with the file names that were made up
    const AtmDevices& inFiles = result_.wrote ? round.devices : round.theirs;
    if (round.readable) {
        if (result_.wrote) {
            round.editor.ReadTexts(order_.adapters);
            for (const int a : order_.adapters) keepUnknown(a, round.editor, base, round.devices);
        }
        noteUnsaved(round.editor.lacking(), written);
        if (!order_.settings)
            for (const int a : order_.adapters) takeOver(a, base, mine, round.theirs);
    }
    noteWithoutTable(round.readable ? written : merge_.devices);
    forEachService(order_.adapters, [&](const ServiceName&, auto record, const std::string&, auto) {
        using Record = std::remove_cvref_t<decltype(record(mine))>;
        Record &was = record(base), &is = record(mine),
               now = record(round.readable ? written : merge_.devices),
               file = record(round.readable ? inFiles : base);
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
    noteUnknownLists(round);
    noteDriverAhead();
    for (std::string& note : configuration_.takeNotes()) result_.notes.push_back(std::move(note));
    if (round.readable) {
        const AtmDevices& now = result_.wrote ? inFiles : written;
        record.keys = keyChanges(order_.adapters, round.theirs, now);
        record.lists = listChanges(order_.adapters, round.theirs, now);
    }
    this->record(round);
    done_ = true;
}

void AdapterChange::noteWithoutTable(const AtmDevices& devices) {
    forEachService(order_.adapters, [&](const ServiceName& name, auto record, const std::string&, auto) {
        const auto& service = record(devices);
        if constexpr (requires { service.clients; })
            if (!service.clients.empty() && service.clientFile.empty())
                result_.withoutTable.push_back(name.words);
    });
}

// The driver has what the user made of a list, unless the service was restarted since.
void AdapterChange::noteDifferentLists() {
    std::set<std::string> restarted;
    for (const int a : order_.adapters)
        forEachService(a, [&](const ServiceName& name, auto, const std::string&, auto bit) {
            if (bit(sentServices_[asIndex(a)])) restarted.insert(name.words);
        });
    for (const auto& [service, entry] : merge_.entriesGivenUp)
        if ((order_.driver || alone_) && !restarted.contains(service))
            result_.notes.push_back(fmt::format(
                "{} of {} is now as in the file.{}", entry, service,
                order_.driver ? " The driver has your change until the service is restarted." : ""));
}

// Of what the user changed: keys that the file has no line for, and names that it does not give back whole.
void AdapterChange::noteUnsaved(const DriverPdfEdit::Lacking& lacking, const AtmDevices& written) {
    if (!order_.settings) return;
    forEachService(
        order_.adapters, [&](const ServiceName& name, auto record, const std::string& section, auto) {
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
