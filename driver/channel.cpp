#include "driver/channel.h"

#include "driver/dai_api.h"
#include "platform/device.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

std::function<void()> DriverChannel::onLost;
bool DriverChannel::driverSilent_ = false;

DriverChannel ioctlDesc;
DriverChannel SetupIoctlDesc;

namespace {

// The errors that mean that nobody has answered. With any other one the driver refuses.
constexpr struct {
    int error;
    Outcome outcome;
} missingAnswers[] = {
    {ETIME, Outcome::silent}, {EPROTO, Outcome::garbled}, {EINTR, Outcome::interrupted},
    {ENXIO, Outcome::absent}, {ENODEV, Outcome::absent},  {ENOENT, Outcome::absent},
};

Outcome outcomeOf(int error) {
    const auto* const found =
        std::ranges::find(missingAnswers, error, [](const auto& row) { return row.error; });
    return found == std::end(missingAnswers) ? Outcome::refused : found->outcome;
}

}  // namespace

// Creates the device before the channel, so that it still exists when the channel is closed at the end of the
// program.
DriverChannel::DriverChannel() {
    platform::device();
}

bool DriverChannel::open(int oflag) {
    close();
    oflag_ = oflag;
    wanted_ = true;
    return connect();
}

void DriverChannel::close() {
    dai_close(0, descriptor_);
    descriptor_ = 0;
    wanted_ = false;
}

bool DriverChannel::connect() {
    const std::time_t begin = std::time(nullptr);
    int opened = 0;
    if (dai_open(0, oflag_, opened) == 0) {
        descriptor_ = opened;
        return true;
    }
    const int error = errno;
    const Outcome outcome = outcomeOf(error);
    note(outcome == Outcome::refused ? Outcome::absent : outcome, begin);  // nobody who could be asked
    errno = error;
    return false;
}

void DriverChannel::lose() {
    dai_close(0, descriptor_);
    descriptor_ = 0;
    ++reopenings_;
    if (onLost) onLost();
}

bool DriverChannel::alive() {
    if (*this && platform::device().hungUp(descriptor_)) lose();
    return static_cast<bool>(*this);
}

int DriverChannel::request(std::span<std::uint8_t> message) {
    if (interrupt && interrupt()) {
        outcome_ = Outcome::withheld;
        received_ = 0;
        return -1;
    }
    if (!*this && (!wanted_ || !connect())) {
        if (!wanted_) note(Outcome::absent, std::time(nullptr));
        return dai_req(0, message, &received_);
    }
    sent_ = std::time(nullptr);
    errno = 0;
    const int result = dai_req(descriptor_, message, &received_);
    note(result == 0 ? Outcome::success : outcomeOf(errno), sent_);
    if (outcome_ == Outcome::absent) lose();
    return result;
}

void DriverChannel::note(Outcome outcome, std::time_t sent) {
    outcome_ = outcome;
    const bool inVain = outcome == Outcome::silent || outcome == Outcome::interrupted;
    driverSilent_ = inVain || (driverSilent_ && !isAnswer(outcome));
    if (isAnswer(outcome)) {
        silentSince_ = 0;
        return;
    }
    ++unanswered_;
    if (!silentSince_) silentSince_ = sent;
}
