#include "tests/support/scripteddriver.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>

namespace {

constexpr std::size_t headerSize = 16;

int failWith(int error) {
    errno = error;
    return -1;
}

}  // namespace

std::string hexText(std::span<const std::uint8_t> bytes) {
    return fmt::format("{:02x}", fmt::join(bytes, " "));
}

int Answer::apply(std::span<std::uint8_t> message) const {
    if (error_) return failWith(error_);
    const auto put = [message](std::size_t at, std::span<const std::uint8_t> bytes) {
        if (at < message.size())
            std::ranges::copy(bytes.first(std::min(bytes.size(), message.size() - at)),
                              message.begin() + static_cast<std::ptrdiff_t>(at));
    };
    put(headerSize, data_);
    for (const auto& [offset, value] : header_)
        put(offset, ByteVector{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)});
    return 0;
}

ScriptedDriver::ScriptedDriver() : before_(platform::setDevice(this)) {}

ScriptedDriver::~ScriptedDriver() {
    channel_.close();
    platform::setDevice(before_);
    for (; next_ < script_.size(); ++next_)
        ADD_FAILURE() << "a request that was expected did not come: "
                      << (script_[next_].request ? hexText(*script_[next_].request) : "any");
}

Answer& ScriptedDriver::expect(std::string_view requestHex) {
    return script_.emplace_back(Step{hexBytes(requestHex), {}}).answer;
}

Answer& ScriptedDriver::expectAny() {
    return script_.emplace_back().answer;
}

DriverChannel& ScriptedDriver::channel() {
    if (!channel_) channel_.open(O_RDWR);
    return channel_;
}

int ScriptedDriver::open(std::string_view path, int oflag) {
    opened_.push_back(fmt::format("{} {}", path, oflag));
    if (const auto failure = failures_.find(++calls_); failure != failures_.end())
        return failWith(failure->second);
    if (onOpen && !onOpen()) return failWith(ENOENT);
    return ++lastDescriptor_;
}

int ScriptedDriver::streamsIoctl(int descriptor, int request, platform::strioctl& block) {
    EXPECT_EQ(request, 0x5308);
    EXPECT_EQ(block.ic_cmd, 0x4C00);
    EXPECT_EQ(block.ic_timout, 0);
    EXPECT_LE(descriptor, lastDescriptor_) << "not a descriptor of this driver";
    const std::span<std::uint8_t> message(reinterpret_cast<std::uint8_t*>(block.ic_dp),
                                          static_cast<std::size_t>(block.ic_len));
    requests_.emplace_back(message.begin(), message.end());
    if (const auto failure = failures_.find(++calls_); failure != failures_.end())
        return failWith(failure->second);

    if (next_ < script_.size()) {
        const Step& step = script_[next_++];
        if (step.request) {
            ByteVector expected = *step.request;
            expected.resize(std::max(expected.size(), message.size()));
            EXPECT_EQ(hexText(message), hexText(expected)) << "request " << requests_.size();
        }
        return step.answer.apply(message);
    }
    Answer answer;
    if (responder_)
        responder_(message, answer);
    else
        ADD_FAILURE() << "a request beyond the script: "
                      << hexText(message.first(std::min<std::size_t>(64, message.size())));
    return answer.apply(message);
}

int ScriptedDriver::close(int descriptor) {
    closed_.push_back(descriptor);
    return 0;
}
