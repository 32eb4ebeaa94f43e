// One change of an adapter's configuration from its beginning to its end: read, merge, send, save, record.
//
// Nothing is shown or asked here: run() works until the change is done or something has to be asked, and is
// called again after the answer. While a question stands nobody is locked out.
#pragma once

#include "change/changerecord.h"
#include "change/configuration.h"
#include "change/driverphase.h"
#include "change/fileset.h"
#include "change/merge.h"
#include "change/pastchanges.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// A question with the answers OK and Cancel.
struct Question {
    std::string title, text;
};

struct ChangeOrder {
    std::vector<int> adapters;  // 0 to 3, ascending
    bool settings = true;       // false, after Cancel: only the lists, which the driver already has
    ServiceSets changed = {};   // services whose settings the user changed: they are restarted
    AtmDevices before = {};     // the records when the user began
    bool driver = false;        // there is a driver
    bool tellLists = false;     // it has not been told of the list edits yet
    std::vector<SentRequest> requests = {};  // that the dialog has sent
    std::vector<PastFile> restored = {};     // in place of what the records would make of the files
    std::string display = {};                // of the X server, for the history
    std::string from = {};                   // where the user sits, for the history
    std::string note = {};                   // the user's words, for the history
    bool guarded = false;                    // somebody takes it back unless it is confirmed
    bool last = false;                       // at the end of the run: lists cannot wait for a later save
    DriverProgress progress = {};            // while the driver is told
};

class LastSent;

struct ChangeResult {
    bool givenUp = false;  // the lock was not waited for: the settings are as before, lists wait to be saved
    bool changed = false;  // the user had changed something
    SaveOutcome save;
    bool wrote = false;                     // a file is another one now
    std::vector<SaveFailure> failures;      // what could not be stored, or why nothing could be saved
    std::vector<std::string> notes;         // about the files
    std::vector<std::string> driver;        // what the driver did not take
    std::vector<std::string> withoutTable;  // servers with clients and without a client table: "LES 3"
    ChangeRecord record;
    std::string change = "none";  // of the history: "0042"

    // Nothing failed, except that an adapter without a section has nowhere to keep settings.
    bool onlySectionsMissing() const;
    bool tookAny() const;  // the driver took a request
};

class AdapterChange {
  public:
    // The records of `configuration` hold what the user wants.
    AdapterChange(Configuration& configuration, ChangeOrder order);
    ~AdapterChange();

    // A question, or nothing when everything is done.
    std::optional<Question> run();
    void answer(bool ok);

    // To be called in place of run() when nobody can be asked any more: takes the file's side where both have
    // changed something, and gives up when the lock is not free in time.
    void finishAlone(std::chrono::milliseconds patience = usualPatience);

    // In place of run(): what it would change, and which requests it would send, as not sent, without
    // locking, sending or writing anything. False when the files cannot be read.
    bool preview();

    const ChangeResult& result() const { return result_; }

  private:
    static constexpr std::chrono::seconds usualPatience{5};  // with others who hold the lock

    enum class Ask { nothing, lock, conflicts };

    struct Round;

    std::optional<Question> lockQuestion();
    std::optional<Question> conflictQuestion();
    bool hasWork() const;
    std::vector<std::string> unsavedLists() const;
    void send();
    void save(Round& round);
    void restore(DriverPdfEdit& editor) const;
    void keepHistory(Round& round, const std::vector<FileEdit>& edits);
    void takeResult(Round& round);
    void record(Round& round);
    void tell(const ServiceSets& due, DriverUse use);
    void forEachDue(const ServiceSets& due, auto visit);
    void noteSent(const ServiceSets& due, std::size_t before);
    void noteSent(int adapter, const ServiceSet& due, std::size_t before, LastSent& sent);
    void noteWithoutTable(const AtmDevices& devices);
    void noteDifferentLists();
    void noteUnknownLists(Round& round);
    void lookAhead(const ServiceSets& due, std::size_t before);
    void noteDriverAhead();
    void noteUnsaved(const DriverPdfEdit::Lacking& lacking, const AtmDevices& written);
    void auditRequests();
    void giveUp();
    void fail(const std::string& file, const std::string& reason);

    Configuration& configuration_;
    ChangeOrder order_;
    Decisions decisions_;
    Merge merge_;
    std::optional<AtmDevices> sent_;  // what the services were restarted with
    ServiceSets sentServices_;
    ServiceSets ahead_;  // services that run with settings that the file will not have
    std::vector<DriverSentence> sentences_;
    std::optional<std::chrono::steady_clock::time_point> sendingSince_;
    bool driverStopped_ = false;  // nothing more is sent
    bool driverLost_ = false;     // there is none to run anything
    Ask asked_ = Ask::nothing;
    std::chrono::milliseconds patience_ = usualPatience;
    bool alone_ = false, done_ = false;
    ChangeResult result_;
};
