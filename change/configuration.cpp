#include "change/configuration.h"

#include "change/audit.h"
#include "change/copy.h"
#include "change/fileset.h"
#include "change/merge.h"
#include "change/pending.h"
#include "change/sent.h"
#include "platform/debuglog.h"

#include <cerrno>
#include <utility>

using namespace std::chrono_literals;

namespace {

// Clients get the name of a PVC file when they need one; servers do not.
template <class Record> bool canKeepList(const Record& record) {
    if constexpr (requires { record.clientFile; })
        return !record.clientFile.empty();
    else
        return true;
}

}  // namespace

void keepUnknown(int adapter, const DriverPdfEdit& editor, const AtmDevices& base, AtmDevices& theirs) {
    forEachService(adapter, [&](const ServiceName&, auto record, const std::string& section, auto) {
        auto& file = record(theirs);
        if (editor.unknownSections().contains(section)) file = record(base);
        if constexpr (hasList<std::remove_cvref_t<decltype(file)>>)
            if (editor.unknownLists().contains(listFileOf(file).str())) *listOf(file) = *listOf(record(base));
    });
}

Configuration::Configuration(std::string program, AtmDevices& mine)
    : program_(std::move(program)), mine_(mine) {}

platform::HostPath Configuration::saveRecord(const platform::HostPath& parameterFile) {
    const bool known = !parameterFile.text.empty();
    const platform::HostPath file = known ? parameterFile : platform::hostPath(PdfEdit::parameterFile);
    return {platform::directoryOf(file).text + "/.tarvolin-save"};
}

int Configuration::lock(std::chrono::milliseconds patience, std::string& failed) {
    failed = platform::ConfigurationLock::file;
    if (lock_.held()) return 0;
    waiting_.clear();
    if (const int error = lock_.take(program_, patience)) return error;
    if (const auto pending = passPending ? std::nullopt : pendingChange()) {
        lock_.release();
        waiting_ = pending->words();
        return EWOULDBLOCK;
    }
    platform::HostPath place = platform::hostPath(PdfEdit::parameterFile);
    platform::files().resolve(place, place);
    const platform::HostPath record = saveRecord(place);
    if (const int error = recover(record)) {
        lock_.release();
        failed = record.text;
        return error;
    }
    // The section engine's copies stand one level higher.
    const platform::HostPath folder = platform::directoryOf(record);
    removeDeadCopies(folder, CopiesOf::saves);
    removeDeadCopies(platform::directoryOf(folder), CopiesOf::engine);
    forgetLostDriver();
    return 0;
}

// Nobody has told syslog what the interrupted save changed: it would have done so at its end.
int Configuration::recover(const platform::HostPath& record) {
    struct stat status {};
    if (platform::files().status(record, status) != 0 && errno == ENOENT) return 0;
    const auto inFiles = [] {
        AtmDevices devices;
        DriverPdfEdit(nullptr, false, devices).ReadPdf();
        return devices;
    };
    const AtmDevices before = inFiles();
    const std::size_t known = notes_.size();
    const int error = recoverFiles(record, notes_);
    for (std::size_t i = known; i < notes_.size(); ++i) {
        tvlog << notes_[i] << std::endl;
        auditRecovery(notes_[i]);
    }
    const AtmDevices after = inFiles();
    for (int adapter = 0; adapter < adapterCount; ++adapter) {
        ChangeRecord completed;
        completed.program = program_;
        completed.keys = keyChanges({&adapter, 1}, before, after);
        completed.lists = listChanges({&adapter, 1}, before, after);
        completed.result = completedLater;
        audit(completed, "none");
    }
    return error;
}

void Configuration::driverLost() {
    driverLost_ = true;
    std::string failed;
    if (lock_.held() || lock(0ms, failed) != 0) return;
    unlock();
}

void Configuration::noteLostDriver() {
    std::string failed;
    if (driverLost_ && !lock_.held() && lock(500ms, failed) == 0) unlock();
}

bool Configuration::forgetLostDriver() {
    if (!std::exchange(driverLost_, false)) return false;
    LastSent sent;
    sent.load();
    if (sent.empty()) return true;
    sent.forgetAll("The driver was gone for a time.");
    sent.save();
    return true;
}

// Whoever may not take the lock, or finds it taken, reads all the same.
bool Configuration::read() {
    std::string failed;
    lock(0ms, failed);
    DriverPdfEdit editor(nullptr, false, mine_, known_);
    const bool good = editor.ReadPdf();
    base_ = mine_;
    unlock();
    return good;
}

void Configuration::readAgain(int adapter) {
    std::string failed;
    lock(1s, failed);
    AtmDevices theirs;
    DriverPdfEdit editor(nullptr, false, theirs, known_);
    if (editor.ReadLink(adapter)) {
        keepUnknown(adapter, editor, base_, theirs);
        takeOver(adapter, base_, mine_, theirs);
    }
    unlock();
}

std::vector<std::string> Configuration::changedLists(int adapter, bool kept) const {
    std::vector<std::string> names;
    forEachService(adapter, [&](const ServiceName& name, auto record, const std::string&, auto) {
        const auto &was = record(base_), &is = record(mine_);
        if constexpr (hasList<decltype(was)>)
            if (*listOf(was) != *listOf(is) && canKeepList(is) == kept) names.push_back(name.words);
    });
    return names;
}

std::vector<std::string> Configuration::unsavedLists(int adapter) const {
    return changedLists(adapter, true);
}

std::vector<std::string> Configuration::listsWithoutFile(int adapter) const {
    return changedLists(adapter, false);
}

std::vector<std::string> Configuration::takeNotes() {
    return std::exchange(notes_, {});
}
