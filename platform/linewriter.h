// Lines for somebody who may have stopped to read them: a pager, a stopped terminal, a program that hangs.
//
// Writing waits at most a tenth of a second for a reader that is behind, and no more until it reads again.
// What finds no room is dropped in whole lines; before the next line that does, another one says how many
// were dropped. The descriptor is shared with other processes, so its flags stay as they are: a pipe or
// terminal is opened once more, a socket is asked for each call not to wait. A regular file is simply
// written.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

class LineWriter {
  public:
    // The descriptor stays the caller's and open.
    explicit LineWriter(int descriptor) : descriptor_(descriptor) {}
    ~LineWriter();
    LineWriter(const LineWriter&) = delete;
    LineWriter& operator=(const LineWriter&) = delete;

    // Writes a text of whole lines, or drops it. Keeps errno.
    void write(std::string_view lines);

    // Tries to write what is left of a line that was begun, and how many lines were dropped.
    void finish();

  private:
    enum class Kind { unknown, file, socket, own, shared };

    void open();
    bool roomWithin(std::chrono::milliseconds time) const;
    long writeSome(std::string_view text) const;
    std::string_view writeAll(std::string_view text);
    void writeWithNote(std::string_view lines);

    int descriptor_;
    int own_ = -1;  // the same pipe or terminal, opened here
    Kind kind_ = Kind::unknown;
    bool terminal_ = false;
    bool stopped_ = false;  // the reader was waited for in vain
    std::string rest_;      // of a line that was begun
    std::size_t dropped_ = 0;
};

// Those of descriptors 1 and 2. They exist until the process has ended.
LineWriter& standardOutput();
LineWriter& standardError();

// To be called first in a program: a standard descriptor that is closed is that of the null device from now
// on, so that no file and no connection gets its number.
void openStandardDescriptors();

// From now on stdout and stderr, also those of the libraries, write through these, line by line.
void guardStandardStreams();

}  // namespace platform
