// The part of a change that the running driver takes: requests one after the other, and what became of each.
//
// Nothing more is sent after the first request without an answer, after the driver was lost, after a minute,
// or when the program is to end. What was refused, not answered or not sent is told in sentences for the
// user.
#pragma once

#include "change/changerecord.h"
#include "change/services.h"
#include "driver/channel.h"
#include "driver/reqparam.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

// What a request is to do; each has its sentences. The `old` ones follow a restart that was refused: what
// runs may have the entry already, and refuses it for that.
enum class StepKind {
    restartClient,
    stop,
    clientPvc,
    oldClientPvc,
    stopForRestart,
    startServer,
    restartServer,  // after a stop that was refused
    restartLecs,
    lecsClient,
    oldLecsClient,
    // Edits of the list of a service that runs on.
    addEntry,
    modifyEntry,
    removeEntry,
};

struct Step {
    StepKind kind;
    const ServiceName& service;
    const char* request;       // "LEC_INIT"
    std::string subject = {};  // "PVC 0 / 204"
};

// About a service by its path; or, without one, why nothing more was sent.
struct DriverSentence {
    std::string service, text;
};

// Called before each request; `doing` says what it does ("Restarting LEC 2 …"), once the change has lasted
// long enough for somebody to wonder, and is empty before. Called once more when that moment comes during a
// request (platform::WhileWaiting). May be null.
using DriverProgress = std::function<void(const std::string& doing)>;

enum class DriverUse {
    none,     // there is no driver, and nobody misses it
    told,     // of everything
    planned,  // it is told nothing: the requests are noted as not sent, and go on as if they had been taken
};

class DriverPhase {
  public:
    using Clock = std::chrono::steady_clock;

    // Nothing is sent over a closed channel: the driver could not be opened then, which errno says. `began`:
    // when the first request of the change was sent.
    DriverPhase(DriverChannel& channel, DriverUse use, ChangeRecord& record,
                Clock::time_point began = Clock::now(), DriverProgress progress = {});

    bool wanted() const { return use_ != DriverUse::none; }

    // Sends one request with `send`, whose result is that of `request`.
    RequestResult take(const Step& step, const reqParam& request, const std::function<int()>& send);

    // A sentence for each request that was not taken, and the reason why nothing more was sent.
    std::vector<DriverSentence> sentences() const;
    bool stopped() const { return !stopped_.empty(); }
    bool lost() const { return lost_; }  // there is no driver any more

  private:
    bool mayGo();
    int sendTelling(const std::string& doing, const std::function<int()>& send);

    DriverUse use_;
    ChangeRecord& record_;
    Clock::time_point began_;
    DriverProgress progress_;
    std::string stopped_;  // why nothing more is sent; empty: it is
    bool lost_ = false;
    std::vector<DriverSentence> sentences_;
};
