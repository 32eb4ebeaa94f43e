#include "tests/support/scripteddriver.h"

#include "platform/debuglog.h"

#include <algorithm>
#include <cerrno>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr std::size_t headerSize = 16;

// Lines of 16 bytes of both sides from the first line that differs on, at most four.
std::string difference(std::span<const std::uint8_t> expected, std::span<const std::uint8_t> actual) {
    std::string text = fmt::format("expected {} bytes, got {}\n", expected.size(), actual.size());
    int shown = 0;
    for (std::size_t at = 0; at < std::max(expected.size(), actual.size()) && shown < 4; at += 16) {
        const auto line = [at](std::span<const std::uint8_t> bytes) {
            const std::size_t from = std::min(at, bytes.size());
            return bytes.subspan(from, std::min<std::size_t>(16, bytes.size() - from));
        };
        if (std::ranges::equal(line(expected), line(actual))) continue;
        text += fmt::format("{:04x} expected {}\n     got      {}\n", at, hexText(line(expected)),
                            hexText(line(actual)));
        ++shown;
    }
    return text;
}

int failWith(int error) {
    errno = error;
    return -1;
}

}  // namespace

ByteVector hexBytes(std::string_view text) {
    ByteVector bytes;
    std::string digits;
    for (const char c : text)
        if (c != ' ') digits += c;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    return fmt::format("{:02x}", fmt::join(bytes, " "));
}

Answer& Answer::data(ByteVector bytes) {
    data_ = std::move(bytes);
    return *this;
}

Answer& Answer::header(std::size_t offset, std::uint16_t value) {
    header_[offset] = value;
    return *this;
}

Answer& Answer::error(int number) {
    error_ = number;
    return *this;
}

Answer& Answer::raw(ByteVector bytes) {
    raw_ = std::move(bytes);
    return *this;
}

int Answer::apply(std::span<std::uint8_t> message) const {
    if (error_) return failWith(error_);
    const auto put = [message](std::size_t at, std::span<const std::uint8_t> bytes) {
        if (at < message.size())
            std::ranges::copy(bytes.first(std::min(bytes.size(), message.size() - at)),
                              message.begin() + static_cast<std::ptrdiff_t>(at));
    };
    if (raw_) {
        put(0, *raw_);
        return 0;
    }
    for (const auto& [offset, value] : header_)
        put(offset, ByteVector{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)});
    put(headerSize, data_);
    return 0;
}

ScriptedDriver::ScriptedDriver() : before_(platform::setDevice(this)) {}

ScriptedDriver::~ScriptedDriver() {
    platform::setDevice(before_);
    for (; next_ < script_.size(); ++next_)
        ADD_FAILURE() << "a request that was expected did not come: "
                      << (script_[next_].request ? hexText(*script_[next_].request) : "any");
}

Answer& ScriptedDriver::expect(ByteVector request) {
    return script_.emplace_back(Step{std::move(request), {}}).answer;
}

Answer& ScriptedDriver::expectAny() {
    return script_.emplace_back().answer;
}

int ScriptedDriver::open(std::string_view path, int oflag) {
    opened_.push_back(fmt::format("{} {}", path, oflag));
    if (const auto failure = failures_.find(++calls_); failure != failures_.end())
        return failWith(failure->second);
    return ++lastDescriptor_;
}

int ScriptedDriver::control(int descriptor, int request, platform::strioctl& block) {
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
            if (!std::ranges::equal(expected, message))
                ADD_FAILURE() << "request " << requests_.size()
                              << " differs: " << difference(expected, message);
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

struct LogCapture::Text {
    std::stringbuf buffer;
};

LogCapture::LogCapture() : text_(std::make_unique<Text>()) {
    tvlog.divert(&text_->buffer);
}

LogCapture::~LogCapture() {
    tvlog.divert(nullptr);
}

std::string LogCapture::take() {
    std::string text = text_->buffer.str();
    text_->buffer.str({});
    return text;
}
