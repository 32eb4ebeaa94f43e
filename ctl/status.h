// How a command ends: the exit status, and what is said of a failure.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

// The first that applies, in this order.
enum class Status {
    usage = 2,  // a wrong word, option or key on the command line
    notPermitted = 77,
    notThere = 10,   // no such adapter, instance, entry, client or change
    wrongValue = 9,  // a value, anything in a document, an unreadable or missing file
    locked = 6,      // by another program, or by a change that waits for its confirmation
    changedMeanwhile = 7,
    noDriver = 8,
    notDone = 5,    // the files are as before
    silent = 3,     // the driver did not answer
    refused = 4,    // the driver refused
    different = 1,  // what was compared, or a preview; check: only warnings
    good = 0,
};

// A complaint of one line, without "tvctl: ". `where` is the setting, entry, file or path that it is about,
// or empty. Comments call one with Status::usage Failure::usage, and so on.
class Failure : public std::runtime_error {
  public:
    Failure(Status status, const std::string& message, std::string where = {})
        : std::runtime_error(message), status_(status), where_(std::move(where)) {}

    Status status() const { return status_; }
    const std::string& where() const { return where_; }

  private:
    Status status_;
    std::string where_;
};

// Of several failures the one whose status comes first.
class FirstFailure {
  public:
    // Calls it and keeps its failure.
    void of(auto attempt) {
        try {
            attempt();
        } catch (const Failure& failure) {
            if (!first_ || place(failure.status()) < place(first_->status())) first_ = failure;
        }
    }
    // Throws it, if there was one.
    void raise() const {
        if (first_) throw *first_;
    }

    const std::optional<Failure>& failure() const { return first_; }

  private:
    static std::ptrdiff_t place(Status status) {
        using enum Status;
        constexpr std::array order{usage,    notPermitted, notThere, wrongValue, locked,   changedMeanwhile,
                                   noDriver, notDone,      silent,   refused,    different};
        return std::ranges::find(order, status) - order.begin();
    }

    std::optional<Failure> first_;
};
