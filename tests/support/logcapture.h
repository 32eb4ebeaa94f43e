// What the debug log gets.
#pragma once

#include "platform/debuglog.h"

#include <sstream>
#include <string>
#include <utility>

// What reaches the debug log while it lives: only what is flushed, as whoever follows a save that takes long,
// or hangs, has to see where it is.
class LogCapture : public std::stringbuf {
  public:
    LogCapture() { tvlog.divert(this); }
    ~LogCapture() override { tvlog.divert(nullptr); }

    std::string take() { return std::exchange(text, {}); }  // since the last call
    std::string text;

  protected:
    int sync() override {
        text += str();
        str("");
        return 0;
    }
};
