// The record of received requests that the command "log" shows.
#pragma once

#include "sim/state.h"

#include <deque>
#include <string>

namespace sim {

class RequestLog {
  public:
    void malformed(const State& state, int connection, ConstBytes packet);
    void opened(const State& state, int connection, int flags, int error);
    // `request` is its name, or empty when there is no such request.
    void asked(const State& state, int connection, std::string_view request, ConstBytes message, int error,
               ConstBytes reply, const std::string& damage);

    // The last `count` lines; with `hex` the input bytes of each message stand under its line.
    std::string text(std::size_t count, bool hex) const;
    void clear() { entries_.clear(); }

    static constexpr std::size_t capacity = 10000;  // some minutes of a busy client; a few megabytes at most

  private:
    struct Entry {
        std::uint64_t number;
        std::string line;
        std::vector<std::uint8_t> input;
    };
    void add(const State& state, int connection, std::string line, ConstBytes input);

    std::deque<Entry> entries_;
    std::uint64_t last_ = 0;
};

}  // namespace sim
