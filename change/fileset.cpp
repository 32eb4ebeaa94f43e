// Replacing: the copies, the record, the renames, and the way back.
#include "change/fileset.h"

#include "change/copy.h"
#include "change/filesteps.h"
#include "change/saverecord.h"
#include "platform/openfile.h"
#include "platform/stream.h"

#include <cerrno>

using platform::files;
using platform::HostPath;

namespace {

class Replacement {
  public:
    Replacement(const HostPath& record, std::span<const FileEdit> edits) : record_(record), edits_(edits) {}

    SaveOutcome run(const std::function<bool()>& asRead) {
        const bool several = edits_.size() > 1;
        if (!prepare()) return giveUp(false);
        if (several && !commit()) return giveUp(true);
        if (!asRead()) {
            outcome_.state = SaveOutcome::State::outdated;
            return giveUp(several);
        }
        for (; done_ < steps_.size(); ++done_)
            if (takeStep(steps_[done_]) != 0) {
                fail(done_);
                return done_ == 0 ? giveUp(several) : goBack();
            }
        // As long as the record is there the next recovery brings the directories to the disk.
        if (syncDirectories(steps_, several ? &record_ : nullptr) != 0) {
            fail(0);
            outcome_.state = SaveOutcome::State::done;
        } else if (several) {
            files().remove(record_);
        }
        return outcome_;
    }

  private:
    void fail(std::size_t index) {
        outcome_.error = errno;
        outcome_.file = edits_[index].name;
        outcome_.state = SaveOutcome::State::asBefore;
    }

    // Opens the files, and writes the copies.
    bool prepare() {
        for (std::size_t i = 0; i < edits_.size(); ++i) {
            const FileEdit& edit = edits_[i];
            struct stat status {};
            files_.emplace_back(edit.exists ? platform::openRegular(edit.place, status) : -1);
            const bool opened = files_.back() || !edit.exists;
            if (!opened || !describe(edit, files_.back(), status) || !copied(edit, files_.back())) {
                fail(i);
                if (steps_.size() > i) steps_.pop_back();  // its copy was not made
                return false;
            }
        }
        return true;
    }

    static bool copied(const FileEdit& edit, const platform::OpenFile& file) {
        if (!edit.content) return true;
        const Times times = file && edit.before == edit.content ? Times::kept : Times::now;
        return makeCopy(edit.place, CopyOf::newContent, *edit.content, edit.like ? *edit.like : file,
                        times) == 0;
    }

    bool describe(const FileEdit& edit, const platform::OpenFile& file, const struct stat& status) {
        SaveStep step{edit.place, edit.content ? copyName(edit.place) : "", noContent, noContent, {}};
        if (edits_.size() > 1) {
            std::string read;
            if (file && !edit.before && !platform::readWhole(file.descriptor(), read)) return false;
            if (file) step.before = contentHash(edit.before.value_or(read));
            if (edit.content) step.after = contentHash(*edit.content);
        }
        if (step.removes()) step.identity = fileIdentity(status);
        steps_.push_back(std::move(step));
        return true;
    }

    // From here on the save happens, unless the record goes again.
    bool commit() {
        if (writeRecord(record_, steps_) == 0 && syncDirectories(steps_, &record_) == 0) return true;
        outcome_ = {SaveOutcome::State::asBefore, errno, record_.text, false};
        return false;
    }

    // Nothing has changed yet: no record, no copies. A record that cannot be removed still commits.
    SaveOutcome giveUp(bool recorded) {
        const bool stays = recorded && files().remove(record_) != 0 && errno != ENOENT;
        if (stays) outcome_.state = SaveOutcome::State::unfinished;
        if (stays) return outcome_;
        removeCopies(steps_);
        if (recorded) syncDirectories(steps_, &record_);
        return outcome_;
    }

    // Puts back what has been replaced, with a record of its own in place of the first. As long as one of the
    // two is there the save can be completed; if the way back fails, that happens. The copies of the old
    // contents have other names than those of the new ones, since the renames are not on the disk yet.
    SaveOutcome goBack() {
        std::vector<SaveStep> back;
        outcome_.state = SaveOutcome::State::unfinished;
        for (std::size_t i = 0; i < done_; ++i) {
            SaveStep step = steps_[i];
            std::swap(step.before, step.after);
            step.copy.clear();
            struct stat status {};
            if (!files_[i]) {  // a new file
                if (files().status(step.place, status) != 0) return outcome_;
                step.identity = fileIdentity(status);
            } else {
                std::string content;
                step.copy = copyName(step.place, CopyOf::oldContent);
                step.identity.clear();
                if (!platform::readWhole(files_[i].descriptor(), content) ||
                    makeCopy(step.place, CopyOf::oldContent, content, files_[i], Times::kept) != 0)
                    return outcome_;
            }
            back.push_back(std::move(step));
        }
        const HostPath draft{platform::directoryOf(record_).text + '/' + copyName(record_)};
        if (writeRecord(draft, back) != 0 || syncDirectories(back, &record_) != 0 ||
            files().rename(draft, record_) != 0 || syncDirectories({}, &record_) != 0)
            return outcome_;
        removeCopies(std::span(steps_).subspan(done_));
        for (const SaveStep& step : back)
            if (takeStep(step) != 0) return outcome_;
        if (syncDirectories(back, &record_) != 0) return outcome_;
        files().remove(record_);
        outcome_.state = SaveOutcome::State::asBefore;
        outcome_.putBack = true;
        return outcome_;
    }

    const HostPath& record_;
    std::span<const FileEdit> edits_;
    std::vector<platform::OpenFile> files_;  // as they were, by edit
    std::vector<SaveStep> steps_;            // by edit
    std::size_t done_ = 0;                   // of the steps
    SaveOutcome outcome_;
};

}  // namespace

SaveOutcome replaceFiles(const HostPath& record, std::span<const FileEdit> edits,
                         const std::function<bool()>& asRead) {
    return Replacement(record, edits).run(asRead);
}
