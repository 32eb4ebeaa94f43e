#include "change/pending.h"

#include "change/statedirectory.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/root.h"
#include "platform/safetext.h"
#include "platform/stream.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <linux/close_range.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

using platform::HostPath;

namespace {

using Json = nlohmann::ordered_json;

constexpr int format = 1;
constexpr std::size_t largest = 16384;

double secondsSinceStart() {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

HostPath pendingFile() {
    return platform::hostPath(fmt::format("{}/pending.json", stateDirectory));
}

std::string text(const Json& json, const char* name) {
    const auto found = json.find(name);
    return found != json.end() && found->is_string() ? platform::unescaped(found->get<std::string>()) : "";
}
double number(const Json& json, const char* name) {
    const auto found = json.find(name);
    return found != json.end() && found->is_number() ? found->get<double>() : 0;
}

pid_t process(const Json& json, const char* name) {
    return static_cast<pid_t>(std::clamp(number(json, name), 0.0, 1e9));
}

// Nothing of the process that started it: no terminal, no descriptors, no working directory.
void standAlone() {
    if (const std::string root = platform::rootDirectory(); !root.empty()) platform::useRootDirectory(root);
    ::setsid();
    if (::chdir("/") != 0) ::_exit(1);
    ::close_range(0, ~0U, 0);
    for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor)
        if (::open("/dev/null", O_RDWR) != descriptor) ::_exit(1);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTSTP}) std::signal(signal, SIG_IGN);
    std::signal(SIGTERM, SIG_DFL);
}

bool isProcess(pid_t process, const std::string& begin) {
    return process > 0 && !begin.empty() && platform::processBegin(process) == begin;
}

bool isMine(unsigned change) {
    const auto pending = pendingChange();
    return pending && pending->change == change && pending->guard == ::getpid();
}

void pause(double seconds) {
    const timespec time{static_cast<time_t>(seconds), static_cast<long>(std::fmod(seconds, 1.0) * 1e9)};
    ::clock_nanosleep(CLOCK_BOOTTIME, 0, &time, nullptr);
}

// Whoever started the guard notes its number next.
bool isNoted(unsigned change) {
    constexpr int mostLooks = 500;
    for (int look = 0; look < mostLooks; ++look, pause(0.01))
        if (isMine(change)) return true;
    return false;
}

// Until the change is confirmed (false) or its time is over. Somebody may give it another deadline meanwhile.
bool timeIsOver(unsigned change) {
    constexpr double longest = 0.5;  // between two looks
    while (isMine(change)) {
        const auto pending = pendingChange();
        const double left = pending ? pending->left() : longest;
        if (left <= 0) return true;
        pause(std::min(left, longest));
    }
    return false;
}

}  // namespace

double PendingChange::left() const {
    if (boot != platform::bootId()) return 0;
    return made || isProcess(maker, makerBegin) ? deadline - secondsSinceStart() : 0;
}

bool PendingChange::guarded() const {
    return boot == platform::bootId() && isProcess(guard, guardBegin);
}

std::string PendingChange::words() const {
    return fmt::format("change {:04} of {} from {}, which waits {:.0f} seconds for its confirmation", change,
                       user, from, std::ceil(std::max(0.0, left())));
}

std::optional<PendingChange> pendingChange() {
    std::optional<PendingChange> pending;
    readPendingChange(pending);
    return pending;
}

bool readPendingChange(std::optional<PendingChange>& found) {
    found.reset();
    std::string content;
    if (!platform::readWhole(pendingFile(), content, largest)) return errno == ENOENT;
    const Json json = Json::parse(content, nullptr, false);
    if (!json.is_object() || number(json, "format") != format) return false;
    PendingChange pending;
    pending.change = static_cast<unsigned>(std::clamp(number(json, "change"), 0.0, 1e9));
    if (pending.change == 0) return false;
    pending.boot = text(json, "boot");
    pending.deadline = number(json, "deadline");
    pending.user = text(json, "user");
    pending.from = text(json, "from");
    pending.guard = process(json, "guard");
    pending.guardBegin = text(json, "guardBegin");
    pending.driver = json.value("driver", Json(true)) != false;
    pending.made = json.value("made", Json()) == true;
    pending.maker = process(json, "maker");
    pending.makerBegin = text(json, "makerBegin");
    for (const Json& service : json.value("services", Json::array()))
        if (service.is_string()) pending.services.push_back(platform::unescaped(service.get<std::string>()));
    found = std::move(pending);
    return true;
}

int notePending(const PendingChange& pending) {
    HostPath place;
    if (makeStateDirectory(stateDirectory, place) != 0) return -1;
    using platform::escaped;
    const Json json{{"format", format},
                    {"change", pending.change},
                    {"boot", escaped(pending.boot)},
                    {"deadline", pending.deadline},
                    {"user", escaped(pending.user)},
                    {"from", escaped(pending.from)},
                    {"guard", pending.guard},
                    {"guardBegin", escaped(pending.guardBegin)},
                    {"driver", pending.driver},
                    {"made", pending.made},
                    {"maker", pending.maker},
                    {"makerBegin", escaped(pending.makerBegin)},
                    {"services", pending.services}};
    return platform::replaceWhole(pendingFile(), json.dump(1) + '\n', 0600, platform::OnDisk::now);
}

int removePending() {
    return platform::files().remove(pendingFile());
}

double deadlineIn(double seconds) {
    return secondsSinceStart() + seconds;
}

int startGuard(PendingChange pending, const TakeBack& takeBack) {
    // The guard's number comes back over a pipe: it is a child of a child, so that nobody has to wait for it.
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return -1;
    const pid_t child = ::fork();
    if (child == 0) {
        const pid_t guard = ::fork();
        if (guard != 0) {
            const bool told = guard > 0 && ::write(ends[1], &guard, sizeof guard) == sizeof guard;
            ::_exit(told ? 0 : 1);
        }
        standAlone();
        if (isNoted(pending.change) && timeIsOver(pending.change)) takeBack(pending.change);
        ::_exit(0);
    }
    ::close(ends[1]);
    int status = 0;
    if (child > 0) ::waitpid(child, &status, 0);
    const bool good = child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
                      ::read(ends[0], &pending.guard, sizeof pending.guard) == sizeof pending.guard;
    if (good) pending.guardBegin = platform::processBegin(pending.guard);
    const int result = good ? notePending(pending) : -1;
    const int error = errno;
    ::close(ends[0]);
    errno = error;
    return result;
}
