#include "change/driverphase.h"

#include "platform/debuglog.h"
#include "platform/device.h"
#include "platform/ending.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <utility>

namespace {

// Long enough for a driver that is slow, short enough for whoever waits.
constexpr std::chrono::seconds longest{60};

// From here on whoever waits is told what for.
constexpr std::chrono::milliseconds noticeable{500};

// {0}: the service, {1}: the driver's code, {2}: the subject. Null: not worth a sentence.
struct Sentences {
    StepKind kind;
    const char *doing, *refused, *unanswered, *notSent;
};
constexpr Sentences sentenceTable[] = {
    {StepKind::restartClient, "Restarting {0} …",
     "{0}: restart refused ({1}). It runs with its old settings.",
     "{0}: no answer to the restart. What it runs with is unknown.",
     "{0}: not restarted. It runs with its old settings."},
    {StepKind::stop, "Stopping {0} …", "{0}: stop refused ({1}). It still runs.",
     "{0}: no answer to the stop. Whether it still runs is unknown.", "{0}: not stopped. It still runs."},
    {StepKind::clientPvc, "Adding {2} to {0} …", "{2} of {0} refused ({1}): the client runs without it.",
     "{2} of {0}: no answer. Whether the client has it is unknown.",
     "{2} of {0} not sent: the client runs without it."},
    {StepKind::oldClientPvc, "Adding {2} to {0} …",
     "{2} of {0} refused ({1}). The client was not restarted and may have it already.",
     "{2} of {0}: no answer. Whether the client has it is unknown.",
     "{2} of {0} not sent: the client may run without it."},
    // A server that does not run refuses to be stopped.
    {StepKind::stopForRestart, "Stopping {0} …", nullptr,
     "{0}: no answer to the stop. Whether it still runs is unknown.",
     "{0}: not restarted. It runs with its old settings."},
    {StepKind::startServer, "Starting {0} …", "{0}: start refused ({1}). It is stopped.",
     "{0}: no answer to the start. Whether it runs is unknown.", "{0}: stopped, and not started again."},
    {StepKind::restartServer, "Restarting {0} …",
     "{0}: restart refused ({1}). It may run with its old settings.",
     "{0}: no answer to the restart. What it runs with is unknown.",
     "{0}: not restarted. It may run with its old settings."},
    {StepKind::restartLecs, "Restarting {0} …",
     "{0}: restart refused ({1}). It is stopped, or runs with its old settings.",
     "{0}: no answer to the restart. Whether it runs is unknown.",
     "{0}: not restarted. It runs with its old settings."},
    {StepKind::lecsClient, "Adding {2} to {0} …", "{2} refused ({1}): the {0} runs without it.",
     "{2}: no answer. Whether the {0} has it is unknown.", "{2} not sent: the {0} runs without it."},
    {StepKind::oldLecsClient, "Adding {2} to {0} …",
     "{2} refused ({1}). The {0} was not restarted and may have it already.",
     "{2}: no answer. Whether the {0} has it is unknown.", "{2} not sent: the {0} may run without it."},
    {StepKind::addEntry, "Adding {2} to {0} …", "{0}: {2} refused ({1}). It runs without it.",
     "{0}: no answer to {2}. Whether it has it is unknown.", "{0}: {2} not sent. It runs without it."},
    {StepKind::modifyEntry, "Changing {2} of {0} …",
     "{0}: the change of {2} refused ({1}). It runs with the old one.",
     "{0}: no answer to the change of {2}. Which one it has is unknown.",
     "{0}: the change of {2} not sent. It runs with the old one."},
    {StepKind::removeEntry, "Taking {2} from {0} …",
     "{0}: the removal of {2} refused ({1}). It still has it.",
     "{0}: no answer to the removal of {2}. Whether it still has it is unknown.",
     "{0}: the removal of {2} not sent. It still has it."},
};

const Sentences& sentencesOf(StepKind kind) {
    return *std::ranges::find(sentenceTable, kind, &Sentences::kind);
}

const char* formatOf(StepKind kind, RequestResult answer) {
    const Sentences& row = sentencesOf(kind);
    return answer == RequestResult::taken        ? nullptr
           : answer == RequestResult::refused    ? row.refused
           : answer == RequestResult::unanswered ? row.unanswered
                                                 : row.notSent;
}

std::string sentence(const char* format, const Step& step, int resp = 0) {
    return fmt::format(fmt::runtime(format), step.service.words, resp, step.subject);
}

}  // namespace

DriverPhase::DriverPhase(DriverChannel& channel, DriverUse use, ChangeRecord& record, Clock::time_point began,
                         DriverProgress progress)
    : use_(use), record_(record), began_(began), progress_(std::move(progress)) {
    if (use != DriverUse::told || channel) return;
    lost_ = true;
    stopped_ = fmt::format("The driver cannot be opened: {}.", std::strerror(errno));
    tvlog << "Cannot open the driver to apply changes: " << std::strerror(errno) << std::endl;
}

bool DriverPhase::mayGo() {
    if (!stopped_.empty()) return false;
    if (platform::endAsked())
        stopped_ = "Nothing more was sent, since the program was asked to end.";
    else if (Clock::now() - began_ > longest)
        stopped_ = fmt::format("Nothing more was sent after {} seconds.", longest.count());
    return stopped_.empty();
}

int DriverPhase::sendTelling(const std::string& doing, const std::function<int()>& send) {
    if (!progress_) return send();
    const Clock::time_point wondering = began_ + noticeable;
    if (Clock::now() >= wondering) {
        progress_(doing);
        return send();
    }
    progress_("");
    const platform::WhileWaiting later(wondering, [&] { progress_(doing); });
    return send();
}

RequestResult DriverPhase::take(const Step& step, const reqParam& request, const std::function<int()>& send) {
    SentRequest sent{step.service.path, step.request, step.subject, RequestResult::notSent, 0};
    if (use_ == DriverUse::planned) {
        record_.requests.push_back(sent);
        return RequestResult::taken;
    }
    if (mayGo()) {
        const int result = sendTelling(sentence(sentencesOf(step.kind).doing, step), send);
        sent.resp = request.header().Resp;
        sent.answer = result == 0         ? RequestResult::taken
                      : request.decided() ? RequestResult::refused
                                          : RequestResult::unanswered;
        if (sent.answer == RequestResult::unanswered) {
            lost_ = request.outcome() == Outcome::absent;
            stopped_ = lost_ ? "The driver was lost. Nothing more was sent."
                             : "Nothing more was sent after a request without an answer.";
            tvlog << stopped_ << std::endl;
        }
    }
    if (const char* format = formatOf(step.kind, sent.answer))
        sentences_.push_back({step.service.path, sentence(format, step, sent.resp)});
    record_.requests.push_back(sent);
    return sent.answer;
}

std::vector<DriverSentence> DriverPhase::sentences() const {
    std::vector<DriverSentence> all = sentences_;
    if (!all.empty() && !stopped_.empty()) all.push_back({"", stopped_});
    return all;
}
