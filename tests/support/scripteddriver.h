// A driver that follows a script: the device seam's twin for tests of everything that talks to the driver.
//
//     ScriptedDriver driver;                                     // in the device's place while it lives
//     driver.expect("81 00 01 00 00 00 16 00 10 00 01 00 00 00 ad de").data("02 00 05 00");
//     aalInfo info(driver.channel(), 0);
//     EXPECT_EQ(info.GetBoardState().mask(), 5);
//
// Requests are compared byte by byte, in order, and must all come. Bytes of a request behind those that were
// given must be zero, so that nothing stale can leave. Requests beyond the script are answered by
// `otherwise`, or fail the test.
#pragma once

#include "driver/channel.h"
#include "platform/device.h"
#include "tests/support/bytes.h"
#include "tests/support/logcapture.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

std::string hexText(std::span<const std::uint8_t> bytes);

// One answer. Unless told otherwise it has Resp 0, the header and the data as they were sent.
class Answer {
  public:
    Answer& data(ByteVector bytes) {  // may be shorter than what was asked for, or longer: it is then cut
        return data_ = std::move(bytes), *this;
    }
    Answer& data(std::string_view hex) { return data(hexBytes(hex)); }
    Answer& rows(std::uint16_t count) { return header(12, count); }   // NRow, true or a lie
    Answer& rowMarker(std::uint16_t row) { return header(10, row); }  // RowM
    Answer& resp(std::uint16_t code) { return header(14, code); }
    Answer& unanswered() { return resp(0xDEAD); }  // Resp is left as it was sent
    Answer& header(std::size_t offset, std::uint16_t value) { return header_[offset] = value, *this; }
    Answer& error(int number) { return error_ = number, *this; }  // the call fails with this errno
    // Carries it out on a message. Returns what the call returns.
    int apply(std::span<std::uint8_t> message) const;

  private:
    std::map<std::size_t, std::uint16_t> header_{{14, 0}};
    ByteVector data_;
    int error_ = 0;
};

class ScriptedDriver : public platform::Device {
  public:
    ScriptedDriver();
    ~ScriptedDriver() override;

    // The next request must begin with these bytes. The answer can be told more about.
    Answer& expect(std::string_view requestHex);
    Answer& expectAny();  // ... may be anything

    // Answers every request beyond the script.
    using Responder = std::function<void(std::span<const std::uint8_t> request, Answer& answer)>;
    void otherwise(Responder responder) { responder_ = std::move(responder); }

    // The k-th call from now on (1 is the next; opens count too) fails with this errno, whatever the script
    // says.
    void failCall(int k, int error) { failures_[calls_ + k] = error; }

    // Asked before each opening; false: it fails with ENOENT.
    std::function<bool()> onOpen;

    // Channels that are open now have lost their driver.
    void hangUp() { lost_ = lastDescriptor_; }

    // A channel to this driver; the first call opens it.
    DriverChannel& channel();

    int open(std::string_view path, int oflag) override;
    int streamsIoctl(int descriptor, int request, platform::strioctl& block) override;
    int close(int descriptor) override;
    bool hungUp(int descriptor) override { return descriptor <= lost_; }

    // What came in.
    const std::vector<ByteVector>& requests() const { return requests_; }
    const std::vector<std::string>& opened() const { return opened_; }  // "/dev/li 2"
    const std::vector<int>& closed() const { return closed_; }

  private:
    struct Step {
        std::optional<ByteVector> request;
        Answer answer;
    };

    std::deque<Step> script_;
    std::size_t next_ = 0;
    Responder responder_;
    std::map<int, int> failures_;
    int calls_ = 0;
    int lastDescriptor_ = 6;
    int lost_ = 0;
    DriverChannel channel_;
    std::vector<ByteVector> requests_;
    std::vector<std::string> opened_;
    std::vector<int> closed_;
    platform::Device* before_;
};
