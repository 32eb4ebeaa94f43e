// A connection to the driver, which closes with its owner.
//
// Request blocks (reqparam.h) are bound to a channel, send their messages over it, and must not outlive it.
// The channel counts what has happened on it since it was made, over every closing and opening.
//
// The driver may come and go. A channel whose driver has hung up, or was not there when the channel was to be
// opened, is opened at the next request. A request for which that fails is not sent and fails with 201.
#pragma once

#include "driver/queries.h"
#include "driver/requests.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <span>

// What has become of a request.
enum class Outcome : std::uint8_t {
    success,
    refused,      // by the driver, with a Resp or an error of the call that is none of the following
    silent,       // no answer in time
    garbled,      // an answer that breaks the rules of the exchange
    interrupted,  // a signal has ended the wait
    absent,       // there is no driver, or it has hung up
    withheld,     // not sent: see DriverChannel::interrupt
};
// The driver has said something, be it no.
constexpr bool isAnswer(Outcome outcome) {
    return outcome == Outcome::success || outcome == Outcome::refused;
}

// A change request that has been sent. `data` lives until the call ends.
struct SentChange {
    RequestId id;
    std::uint8_t link, unit;
    std::span<const std::uint8_t> data;
    Outcome outcome;
    int resp;
};

class InfoMsgHandler;

// A query that has ended, be it without an answer. Everything in it lives until the call ends.
struct EndedQuery {
    const InfoMsgHandler& query;
    QueryId id;
    bool entire;                          // of a table: all its rows were asked for
    std::span<const std::uint8_t> bytes;  // of the reply, or of the rows that came
};

class DriverChannel {
  public:
    DriverChannel();  // closed
    ~DriverChannel() { close(); }
    DriverChannel(const DriverChannel&) = delete;
    DriverChannel& operator=(const DriverChannel&) = delete;

    // Opens the access device; oflag is O_RDONLY or O_RDWR. Closes first what was open. False when there is
    // no driver or it refuses (errno says why); the channel is closed then, and the next request tries again.
    bool open(int oflag);
    void close();                                               // requests do not open it again
    explicit operator bool() const { return descriptor_ > 0; }  // open now

    // The same, but looks whether the driver has hung up since the last request, which closes the channel.
    bool alive();

    // Sends a message and waits for the reply: see dai_req.
    int request(std::span<std::uint8_t> message);

    Outcome outcome() const { return outcome_; }        // of the last request, or of opening the channel
    std::size_t received() const { return received_; }  // bytes of the last reply, header included
    // When the first request was sent that, as all since, has got no answer. 0: the driver answers.
    std::time_t silentSince() const { return silentSince_; }

    // True if this channel has had no answer since its last failed request, or if a wait on any channel has
    // timed out or been left and no channel has got an answer since.
    bool maybeSilent() const { return silentSince_ != 0 || driverSilent_; }

    // Since the last request was sent, in whole seconds.
    std::chrono::seconds waitedFor() const { return std::chrono::seconds(std::time(nullptr) - sent_); }

    unsigned long unanswered() const { return unanswered_; }  // requests without an answer
    // How often the driver has hung up, so that the channel had to be opened again. Counted at once, before
    // anything is sent over the channel opened again: what was changed before may be lost with that driver.
    unsigned long reopenings() const { return reopenings_; }

    // For the request blocks: what became of a change request.
    void noteChange(const SentChange& change) const {
        if (onChange) onChange(change);
    }
    std::function<void(const SentChange&)> onChange;

    // Called after each query of a reply or of a table.
    std::function<void(const EndedQuery&)> onQuery;

    // Called when a driver has hung up, on whatever channel.
    static std::function<void()> onLost;

    // Asked before each request. True: it is not sent and fails.
    std::function<bool()> interrupt;

  private:
    bool connect();
    void lose();
    void note(Outcome outcome, std::time_t sent);

    static bool driverSilent_;

    int descriptor_ = 0;
    int oflag_ = 0;
    bool wanted_ = false;  // opened, be it in vain, and not closed since
    Outcome outcome_ = Outcome::success;
    std::time_t sent_ = 0;
    std::time_t silentSince_ = 0;
    std::size_t received_ = 0;
    unsigned long unanswered_ = 0;
    unsigned long reopenings_ = 0;
};

// The channels of the windows; each statistics dialog has one more of its own. ioctlDesc is the main
// window's, read-only: its queries and the trace switches; it is open when the driver was there the last time
// that it was asked. SetupIoctlDesc is the configuration dialog's, read-write: what its pages ask and change.
extern DriverChannel ioctlDesc;
extern DriverChannel SetupIoctlDesc;

// Keeps a channel that lives longer open for as long as this object lives.
class OpenedChannel {
  public:
    OpenedChannel(DriverChannel& channel, int oflag) : channel_(channel) { channel_.open(oflag); }
    ~OpenedChannel() { channel_.close(); }
    OpenedChannel(const OpenedChannel&) = delete;
    OpenedChannel& operator=(const OpenedChannel&) = delete;

  private:
    DriverChannel& channel_;
};

// Tells whether a request on a channel has got no answer since this object was made. Each wait can take many
// seconds, so that a caller with further requests stops then. The channel must outlive the object.
class AnswerWatch {
  public:
    explicit AnswerWatch(const DriverChannel& channel) : channel_(channel), before_(channel.unanswered()) {}

    bool missed() const { return channel_.unanswered() != before_; }
    void restart() { before_ = channel_.unanswered(); }  // as if made now

  private:
    const DriverChannel& channel_;
    unsigned long before_;
};
