#include "platform/linewriter.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

// A reader that runs gets its turn within this time even on a busy machine; nobody takes it for a hang.
constexpr std::chrono::milliseconds patience{100};

// How much of the text a pipe or terminal takes at once when it is ready. A terminal has room for 256 bytes
// then, and looks again in front of each control character, which it may write as several.
std::size_t takenAtOnce(std::string_view text, bool terminal) {
    if (!terminal) return std::min<std::size_t>(text.size(), PIPE_BUF);
    const auto control = [](unsigned char c) { return c < ' '; };
    const auto plain = std::find_if(text.begin(), text.end(), control) - text.begin();
    return std::clamp<std::size_t>(static_cast<std::size_t>(plain), 1, 256);
}

std::size_t linesIn(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + !text.ends_with('\n');
}

}  // namespace

LineWriter::~LineWriter() {
    finish();
    if (own_ >= 0) ::close(own_);
}

void LineWriter::open() {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || S_ISREG(status.st_mode)) {
        kind_ = Kind::file;
    } else if (S_ISSOCK(status.st_mode)) {
        kind_ = Kind::socket;
    } else {
        terminal_ = ::isatty(descriptor_);
        if (terminal_ || S_ISFIFO(status.st_mode))
            own_ = ::open(fmt::format("/proc/self/fd/{}", descriptor_).c_str(),
                          O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        kind_ = own_ >= 0 ? Kind::own : Kind::shared;  // refused, for example, for another user's terminal
    }
}

bool LineWriter::roomWithin(std::chrono::milliseconds time) const {
    pollfd watched{own_ >= 0 ? own_ : descriptor_, POLLOUT, 0};
    return ::poll(&watched, 1, static_cast<int>(time.count())) > 0;
}

// As ::write, with EAGAIN where the reader is behind.
long LineWriter::writeSome(std::string_view text) const {
    switch (kind_) {
    case Kind::socket:
        return ::send(descriptor_, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    case Kind::own:
        return ::write(own_, text.data(), text.size());
    case Kind::shared:
        if (roomWithin({})) return ::write(descriptor_, text.data(), takenAtOnce(text, terminal_));
        errno = EAGAIN;
        return -1;
    default:
        return ::write(descriptor_, text.data(), text.size());
    }
}

// What could not be written.
std::string_view LineWriter::writeAll(std::string_view text) {
    if (kind_ == Kind::unknown) open();
    while (!text.empty()) {
        // Not the last bytes of a full pipe, into which only the shortest of the next lines would fit.
        if (stopped_ && !roomWithin({})) break;
        const long length = writeSome(text);
        if (length > 0) {
            text.remove_prefix(static_cast<std::size_t>(length));
            stopped_ = false;
        } else if (length == 0 || errno == EAGAIN) {
            if (stopped_) break;
            stopped_ = true;
            roomWithin(patience);  // a signal ends the wait, too: it may ask for the end
        } else if (errno != EINTR) {
            break;
        }
    }
    return text;
}

// One text with the note in front, so that there is no note that the next line finds no room behind.
void LineWriter::writeWithNote(std::string_view lines) {
    const std::string text =
        (dropped_ ? fmt::format("... {} lines dropped\n", dropped_) : std::string()).append(lines);
    const std::string_view left = writeAll(text);
    if (left.size() < text.size()) {
        rest_ = left;
        dropped_ = 0;
    } else if (!lines.empty()) {
        dropped_ += linesIn(lines);
    }
}

void LineWriter::finish() {
    if (!rest_.empty()) rest_ = std::string(writeAll(rest_));
    if (rest_.empty() && dropped_) writeWithNote({});
}

void LineWriter::write(std::string_view lines) {
    if (lines.empty()) return;
    const int error = errno;
    if (!rest_.empty()) rest_ = std::string(writeAll(rest_));
    if (rest_.empty())
        writeWithNote(lines);
    else
        dropped_ += linesIn(lines);
    errno = error;
}

namespace {

// Never destroyed: streams are flushed after everything else.
LineWriter& lasting(int descriptor) {
    return *std::make_unique<LineWriter>(descriptor).release();
}

std::FILE* streamOver(LineWriter& writer) {
    const auto write = [](void* cookie, const char* bytes, std::size_t count) {
        static_cast<LineWriter*>(cookie)->write({bytes, count});
        return static_cast<ssize_t>(count);
    };
    std::FILE* stream = ::fopencookie(&writer, "w", {nullptr, write, nullptr, nullptr});
    if (stream) std::setvbuf(stream, nullptr, _IOLBF, 0);
    return stream;
}

}  // namespace

LineWriter& standardOutput() {
    static LineWriter& writer = lasting(STDOUT_FILENO);
    return writer;
}

LineWriter& standardError() {
    static LineWriter& writer = lasting(STDERR_FILENO);
    return writer;
}

void openStandardDescriptors() {
    // open() gives the lowest number that is free. For reading alone: nobody would see what is written there,
    // so writing has to fail.
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDONLY);
    ::close(descriptor);
}

// The C library lets a program assign these streams. Every writer goes through them: this way no line of ours
// can be forgotten, and the warnings of Xt and Motif are no exception.
void guardStandardStreams() {
    if (std::FILE* stream = streamOver(standardOutput())) stdout = stream;
    if (std::FILE* stream = streamOver(standardError())) stderr = stream;
    std::atexit([] {
        standardOutput().finish();
        standardError().finish();
    });
}

}  // namespace platform
