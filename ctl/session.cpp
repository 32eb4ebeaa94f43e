#include "ctl/session.h"

#include "change/services.h"
#include "change/takeback.h"
#include "ctl/status.h"
#include "platform/device.h"
#include "platform/ending.h"
#include "platform/files.h"
#include "platform/user.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <thread>

using namespace std::chrono_literals;
using platform::files;

namespace {

// Others save within milliseconds; a record that stays is that of a killed program.
constexpr int mostReadings = 50;
constexpr auto betweenReadings = 20ms;

constexpr auto lockPatience = 5s;

bool saveIsUnderWay() {
    platform::HostPath place = platform::hostPath(PdfEdit::parameterFile);
    files().resolve(place, place);
    struct stat status {};
    return files().status(Configuration::saveRecord(place), status) == 0;
}

// There is no driver, or nothing behind its node.
bool isAbsent(int error) {
    return error == 0 || error == ENOENT || error == ENXIO || error == ENODEV;
}

[[noreturn]] void unreadable(int error) {
    throw Failure(Status::wrongValue, fmt::format("{}: {}", PdfEdit::parameterFile, std::strerror(error)),
                  PdfEdit::parameterFile);
}

}  // namespace

void requireRoot() {
    if (!platform::superUser()) throw Failure(Status::notPermitted, "only root may do this");
}

Session::Session(const Options& options) : options_(options) {
    using Clock = platform::WaitLimit::Clock;
    if (!options.readOnly)
        if (std::string told = takeOverGuard("tvctl"); !told.empty()) warnings_.push_back(std::move(told));
    platform::WaitLimit::set(Clock::now() + std::chrono::duration_cast<Clock::duration>(options.timeout));
}

void Session::read() {
    for (int reading = 1;; ++reading) {
        const bool last = reading == mostReadings;
        if (saveIsUnderWay() && !last) {
            // What a killed program has begun is completed by whoever may.
            std::string failed;
            if (!options_.readOnly && platform::superUser() && configuration.lock(0ms, failed) == 0)
                configuration.unlock();
            std::this_thread::sleep_for(betweenReadings);
            continue;
        }
        AtmDevices found;
        DriverPdfEdit editor(nullptr, false, found, configuration.known());
        const FileAsRead& parameters = editor.files().read(PdfEdit::parameterFile);
        if (!parameters.exists || parameters.error) unreadable(parameters.exists ? parameters.error : ENOENT);
        if (!editor.ReadPdf()) unreadable(parameters.error);
        if (!last && (!editor.files().standAsRead() || saveIsUnderWay())) continue;
        devices = found;
        configuration.base() = found;
        missing_ = editor.unknownSections();
        unknownLists_ = editor.unknownLists();
        files = std::move(editor.files());
        return;
    }
}

void Session::lock() {
    std::string failed;
    if (const int error = configuration.lock(lockPatience, failed)) {
        if (error == EWOULDBLOCK || error == EINTR)
            throw Failure(Status::locked,
                          fmt::format("the configuration is being changed by {}", configuration.holder()));
        throw Failure(Status::notDone, fmt::format("{}: {}", failed, std::strerror(error)), failed);
    }
}

// Nothing is cut off in the middle: asked to end, a change sends nothing more and saves.
void Session::readForChange() {
    requireRoot();
    platform::watchEndSignals();
    try {
        lock();
    } catch (const Failure& failure) {
        if (failure.status() != Status::locked) throw;
        lockFailure_ = failure;
    }
    read();
}

void Session::needLock() const {
    if (lockFailure_) throw *lockFailure_;
}

const Discovery& Session::discovery() {
    if (discovery_) return *discovery_;
    discovery_.emplace();
    const bool mayChange = !options_.readOnly && platform::superUser();
    if (!openDriver(mayChange ? O_RDWR : O_RDONLY) && !openDriver(O_RDONLY)) return *discovery_;
    query_.emplace(channel_, 0);
    *discovery_ = discoverAdapters(*query_, devices);
    configuration.driverRevision = discovery_->version;
    return *discovery_;
}

std::string Session::unknownListOf(const ServiceId& service) const {
    std::string unknown;
    withRecord(service, [&](auto record) {
        const auto& of = record(configuration.base());
        if constexpr (hasList<std::remove_cvref_t<decltype(of)>>)
            if (const std::string name = listFileOf(of).str(); unknownLists_.contains(name)) unknown = name;
    });
    return unknown;
}

bool Session::openDriver(int mode) {
    const bool open = channel_.open(mode);
    openError_ = open ? 0 : errno;
    return open;
}

bool Session::driverIsThere() const {
    return channel_ || channel_.outcome() != Outcome::absent || !isAbsent(openError_);
}

Failure Session::noDriver(const std::string& advice) const {
    if (channel_.outcome() != Outcome::absent) return {Status::silent, "the driver did not answer"};
    if (isAbsent(openError_)) return {Status::noDriver, "there is no driver" + advice};
    const Status status =
        openError_ == EACCES || openError_ == EPERM ? Status::notPermitted : Status::refused;
    return {status, fmt::format("the driver cannot be opened: {}", std::strerror(openError_))};
}

bool Session::hasSection(int adapter) const {
    const auto services = namedServices(adapter);
    return !std::ranges::all_of(services,
                                [&](const NamedService& s) { return missing_.contains(s.section); });
}

std::vector<int> Session::adapters() {
    std::vector<int> all;
    for (int a = 0; a < adapterCount; ++a) {
        const auto isIt = [a](const FoundAdapter& found) { return found.index == a; };
        if (hasSection(a) || std::ranges::any_of(discovery().adapters, isIt)) all.push_back(a);
    }
    return all;
}

bool Session::knowsMac(int adapter) {
    return std::ranges::any_of(discovery().adapters, [adapter](const FoundAdapter& found) {
        return found.index == adapter && !found.line.empty();
    });
}
