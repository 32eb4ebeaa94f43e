#include "platform/lock.h"

#include "platform/ending.h"
#include "platform/root.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;

// Of a program that was asked to end: a save of others takes less, and nobody should wait for it any longer.
constexpr std::chrono::milliseconds lastPatience{500};

// Below a root directory /run may be missing; the system's own exists.
int openLockFile() {
    const HostPath path = hostPath(ConfigurationLock::file);
    constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    int descriptor = ::open(path.c_str(), flags, 0600);
    if (descriptor < 0 && errno == ENOENT && !rootDirectory().empty()) {
        ::mkdir(hostPath("/run").c_str(), 0755);
        descriptor = ::open(path.c_str(), flags, 0600);
    }
    return descriptor;
}

// It is written to: a further name of some other file is none, and neither is a pipe.
bool isLockFile(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink <= 1;
}

bool standsAtItsPlace(int descriptor, struct stat& held) {
    struct stat found {};
    return ::fstat(descriptor, &held) == 0 &&
           ::stat(hostPath(ConfigurationLock::file).c_str(), &found) == 0 && held.st_dev == found.st_dev &&
           held.st_ino == found.st_ino;
}

// What somebody else wrote is not believed: a name without odd characters and a number, or nothing.
std::string readHolder(int descriptor) {
    std::array<char, 64> bytes;
    const ssize_t length = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    const std::string_view text(bytes.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    const std::string_view name = text.substr(0, text.find(' '));
    const auto isPlain = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '-'; };
    pid_t process = 0;
    if (!name.empty() && name.size() < text.size() && std::ranges::all_of(name, isPlain))
        std::from_chars(text.data() + name.size() + 1, text.data() + text.size(), process);
    // One that was killed has left its name, and somebody who writes none holds the lock.
    const bool lives = process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
    return lives ? fmt::format("{} (process {})", name, process) : "another program";
}

// Who reads this line only tells a person; a failure to write it is not one of the lock. Lines of one length
// are written over each other: an emptied file would give its block back, and some file systems write one
// that was emptied and filled to the disk when it is closed.
constexpr off_t lineLength = 32;

void writeLine(int descriptor, std::string_view text) {
    const std::string line = fmt::format("{:<{}}\n", text, lineLength - 1);
    static_cast<void>(::pwrite(descriptor, line.data(), line.size(), 0) == 0);
}

}  // namespace

int ConfigurationLock::take(const std::string& program, std::chrono::milliseconds patience) {
    if (held()) return 0;
    const int descriptor = openLockFile();
    if (descriptor < 0) return errno;
    if (!isLockFile(descriptor)) {
        ::close(descriptor);
        return EPERM;
    }
    Clock::time_point deadline = Clock::now() + patience;
    bool ending = false;
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        int error = errno;
        constexpr timespec pause{0, 20'000'000};
        if (!ending && endAsked()) deadline = std::min(deadline, Clock::now() + lastPatience);
        ending = endAsked();
        if (error == EWOULDBLOCK && Clock::now() < deadline) {
            ::nanosleep(&pause, nullptr);
            continue;
        }
        if (error == EWOULDBLOCK && ending) error = EINTR;
        holder_ = readHolder(descriptor);
        ::close(descriptor);
        return error;
    }
    // The file that was waited for may have been removed or replaced: others take the new one.
    struct stat status {};
    if (!standsAtItsPlace(descriptor, status)) {
        ::close(descriptor);
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        return take(program, std::max(left, std::chrono::milliseconds(0)));
    }
    descriptor_ = descriptor;
    writeLine(descriptor_, fmt::format("{} {}", program, ::getpid()));
    if (status.st_size > lineLength) static_cast<void>(::ftruncate(descriptor_, lineLength) == 0);
    return 0;
}

void ConfigurationLock::release() {
    if (!held()) return;
    writeLine(descriptor_, "free");
    ::close(std::exchange(descriptor_, -1));
}

}  // namespace platform
