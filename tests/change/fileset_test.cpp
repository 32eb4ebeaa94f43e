// A save of several files leaves all old ones or all new ones, whatever happens to it.
#include "change/fileset.h"

#include "change/saverecord.h"
#include "tests/support/crashingfiles.h"
#include "tests/support/failingfiles.h"

namespace {

using State = SaveOutcome::State;

const platform::HostPath record{"/etc/atm/.tarvolin-save"};

// The names and contents of files before and after a save; "(none)" for no file.
struct File {
    std::string path, before, after;
};
using FileSet = std::vector<File>;

// The parameter file unchanged, lists changed, created and removed.
const FileSet five = {{"/etc/atm/tvconf", "c0", "c0"},
                      {"/etc/atm/pvc0", "p0", "p1"},
                      {"/etc/atm/pvc1", "(none)", "q1"},
                      {"/etc/atm/clients", "k0", "(none)"},
                      {"/etc/atm/pvc2", "r0 long", "r1"}};
const FileSet one = {{"/etc/atm/pvc0", "p0", "p1"}};

std::vector<FileEdit> editsOf(const FileSet& set) {
    std::vector<FileEdit> edits;
    for (const File& file : set) {
        FileEdit edit{file.path, {file.path}, file.before != "(none)", std::nullopt};
        if (file.after != "(none)") edit.content = file.after;
        edits.push_back(edit);
    }
    return edits;
}

FileSet reversed(FileSet set) {
    for (File& file : set) std::swap(file.before, file.after);
    return set;
}

CrashingFiles::Disk diskOf(const FileSet& set) {
    CrashingFiles files;
    for (const File& file : set)
        if (file.before != "(none)") files.put(file.path, file.before);
    return files.moments().back();
}

// 'o' if all files are the old ones, 'n' if all are the new ones, otherwise 'm'.
char kindOf(const FileSet& set, const CrashingFiles& files) {
    bool old = true, young = true;
    for (const File& file : set) {
        old &= files.get(file.path) == file.before;
        young &= files.get(file.path) == file.after;
    }
    return old ? 'o' : young ? 'n' : 'm';
}

std::vector<std::string> recovered() {
    std::vector<std::string> notes;
    EXPECT_EQ(recoverFiles(record, notes), 0);
    return notes;
}

// Recovers each disk that can be found after a loss of power, and each that can be found when the power is
// lost a second time, while recovering. Each once.
class Search {
  public:
    explicit Search(const FileSet& set) : set_(set) {}

    void recoverAll(const CrashingFiles::Disk& moment) { recoverAll(moment, true); }
    void recoverAll(const std::vector<CrashingFiles::Disk>& moments) {
        for (const CrashingFiles::Disk& moment : moments) recoverAll(moment);
    }

    long states = 0, old = 0, young = 0, mixed = 0;

  private:
    void recoverAll(const CrashingFiles::Disk& moment, bool again) {
        if (!moments_[again].insert(moment.key()).second) return;
        CrashingFiles::afterPowerLoss(moment,
                                      [&](const CrashingFiles::Disk& found) { recover(found, again); });
    }

    void recover(const CrashingFiles::Disk& found, bool again) {
        if (!found_[again].insert(found.key()).second) return;
        std::vector<CrashingFiles::Disk> moments;
        {
            CrashingFiles files(found);
            recovered();
            const char kind = kindOf(set_, files);
            ++states;
            ++(kind == 'o' ? old : kind == 'n' ? young : mixed);
            EXPECT_EQ(files.get(record.text), "(none)");
            moments = files.moments();
        }
        if (again)
            for (const CrashingFiles::Disk& second : moments) recoverAll(second, false);
    }

    const FileSet& set_;
    std::set<std::string> moments_[2], found_[2];  // that were looked at, the second time and the first
};

SaveOutcome save(const FileSet& set) {
    return replaceFiles(record, editsOf(set), [] { return true; });
}

}  // namespace

TEST(FileSet, PowerIsLostBeforeEveryCall) {
    for (const FileSet& set : {one, five}) {
        CrashingFiles files(diskOf(set));
        ASSERT_EQ(save(set).state, State::done);
        Search search(set);
        search.recoverAll(files.moments());
        RecordProperty(fmt::format("states_of_{}_files", set.size()), fmt::format("{}", search.states));
        EXPECT_EQ(search.mixed, 0) << search.states;
        EXPECT_TRUE(search.old && search.young) << search.states;
    }
}

// Any call, also on the way back, and where the way back fails.
TEST(FileSet, ACallFailsAndThenPowerIsLost) {
    std::map<State, int> states;
    for (const FileSet& set : {one, five}) {
        Search search(set);
        for (int k = 1;; ++k) {
            CrashingFiles files(diskOf(set));
            FailingFiles calls;
            calls.failAt(k, EIO);
            const SaveOutcome outcome = save(set);
            if (!calls.failed()) break;
            ++states[outcome.state];
            const bool done = outcome.state == State::done;
            EXPECT_TRUE(done || outcome.error == EIO) << k;
            EXPECT_TRUE(outcome.state == State::unfinished || kindOf(set, files) == (done ? 'n' : 'o')) << k;
            const std::vector<CrashingFiles::Disk> moments = files.moments();
            search.recoverAll(moments);
            ASSERT_EQ(search.mixed, 0)
                << k << " " << static_cast<int>(outcome.state) << outcome.file << outcome.putBack;
            Search end(set);  // what was said to have failed does not happen later, nor the other way
            end.recoverAll(moments.back());
            EXPECT_EQ(outcome.state == State::asBefore ? end.young : 0, 0) << k;
            EXPECT_EQ(done && !outcome.error ? end.old : 0, 0) << k;
        }
        RecordProperty(fmt::format("states_of_{}_files", set.size()), fmt::format("{}", search.states));
    }
    EXPECT_GT(states[State::asBefore], 40);
}

// Two calls fail: a rename, and any call after it, which strikes the way back.
TEST(FileSet, TheWayBackFails) {
    Search search(five);
    int unfinished = 0;
    for (int first = 1; first <= 4; ++first)
        for (int k = 1; k < 150; ++k) {
            CrashingFiles files(diskOf(five));
            FailingFiles calls;
            int renames = 0;
            calls.failAt(first, EIO, FileCall::rename);
            calls.onCall = [&](FileCall kind) {  // the second failure is set at the call behind the first
                if (renames == first) calls.failAt(k, EIO);
                renames += renames == first || kind == FileCall::rename;
            };
            const SaveOutcome outcome = save(five);
            EXPECT_EQ(outcome.error, EIO);
            unfinished += outcome.state == State::unfinished;
            search.recoverAll(files.moments());
        }
    RecordProperty("states", fmt::format("{}", search.states));
    EXPECT_EQ(search.mixed, 0) << search.states;
    EXPECT_GT(unfinished, 50);
}

// A record whose removal was not synced comes back after a later save, or after somebody made a file anew
// that the first save had removed. Neither must be undone.
TEST(FileSet, ARecordThatComesBackHarmsNothingLater) {
    const FileSet shrink = {{"/etc/atm/pvc0", "p0", "p1"}, {"/etc/atm/clients", "k0", "(none)"}};
    const FileSet laters[] = {
        {{"/etc/atm/clients", "(none)", "k0"}}, {{"/etc/atm/pvc0", "p1", "p0"}}, reversed(shrink)};
    for (const FileSet& later : laters) {
        CrashingFiles files(diskOf(shrink));
        ASSERT_EQ(save(shrink).state, State::done);
        ASSERT_EQ(save(later).state, State::done);
        Search search(later);
        search.recoverAll(files.moments().back());
        EXPECT_EQ(search.old + search.mixed, 0) << search.states;
    }
    CrashingFiles files(diskOf(shrink));
    ASSERT_EQ(save(shrink).state, State::done);
    files.put("/etc/atm/clients", "k0");
    int cameBack = 0;
    CrashingFiles::afterPowerLoss(files.moments().back(), [&](const CrashingFiles::Disk& found) {
        CrashingFiles after(found);
        cameBack += after.get(record.text) != "(none)";
        recovered();
        EXPECT_EQ(after.get("/etc/atm/clients"), "k0");
    });
    EXPECT_EQ(cameBack, 1);
}

TEST(FileSet, WhatSomebodyEditedSinceIsLeftAlone) {
    CrashingFiles files(diskOf(five));
    ASSERT_EQ(save(five).state, State::done);
    const std::vector<CrashingFiles::Disk> moments = files.moments();
    int edited = 0;
    for (const CrashingFiles::Disk& moment : moments)
        CrashingFiles::afterPowerLoss(moment, [&](const CrashingFiles::Disk& found) {
            CrashingFiles after(found);
            for (const char* path : {"/etc/atm/pvc0", "/etc/atm/clients"}) after.put(path, "edited");
            const std::vector<std::string> notes = recovered();
            EXPECT_EQ(after.get("/etc/atm/pvc0") + after.get("/etc/atm/clients"), "editededited");
            edited += notes.size() > 1 &&
                      notes.front() == "/etc/atm/pvc0 was changed since an interrupted save, and left alone. "
                                       "The save's version is in /etc/atm/pvc0.unsaved.";
        });
    EXPECT_GT(edited, 10);
}
