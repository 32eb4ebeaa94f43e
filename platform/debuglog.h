// The debug log: progress lines, request names and request headers. Discarded until attached.
#pragma once

#include "platform/linewriter.h"

#include <memory>
#include <ostream>
#include <streambuf>

class DebugLog : public std::ostream {
  public:
    DebugLog();
    ~DebugLog() override;

    // From now on everything written goes to the writer, which must outlive the log, at each std::endl.
    void attach(platform::LineWriter& writer);
    bool attached() const { return buffer_ != nullptr; }

    // Writes a line of these parts. Nothing is formatted while nobody reads the log.
    template <class... Parts> void line(const Parts&... parts) {
        if (rdbuf()) (*this << ... << parts) << std::endl;
    }

    // For tests: from now on everything goes to the given buffer; null discards it again.
    void divert(std::streambuf* buffer);

  private:
    std::unique_ptr<std::streambuf> buffer_;
};

extern DebugLog tvlog;
