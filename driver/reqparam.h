// A request block: one message buffer, bound to one channel, that is filled, sent, read and used again. The
// channel must outlive it.
//
// The header is kept decoded beside the buffer and is written in front of the data when the request is sent.
// Of a reply's header only RowM, NRow and Resp are taken; other changes by the driver are logged and dropped.
// The data of a block stays valid until its next request or SetupMsg.
#pragma once

#include "driver/channel.h"
#include "driver/dai_api.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

class reqParam {
  public:
    // The buffer is made for header.Size bytes.
    reqParam(DriverChannel& channel, const req_param_t& header);
    virtual ~reqParam() = default;
    reqParam(const reqParam&) = delete;
    reqParam& operator=(const reqParam&) = delete;

    // Makes the buffer at least `size` bytes long and puts the data area behind a header of the usual length.
    // A buffer that grows is zeroed; one that is large enough keeps its bytes. The header stays as it is.
    // Returns the data area.
    std::span<std::uint8_t> SetupMsg(std::size_t size);

    // Sends the message. 0, or -1 with the reason in header().Resp. Both headers, as sent and as they came
    // back, and a failure go to the debug log.
    int daiRequest();

    req_param_t& header() { return header_; }
    const req_param_t& header() const { return header_; }
    int result() const { return result_; }  // of the last daiRequest
    Outcome outcome() const { return outcome_; }
    bool answered() const { return isAnswer(outcome_); }
    // The answer says what became of the request: it did not break off before its Resp.
    bool decided() const { return answered() && header_.Resp != respUnanswered; }
    std::size_t capacity() const { return capacity_; }

    // The buffer behind the header: the data of the request, and after it the data of the reply.
    std::span<std::uint8_t> data() { return {buffer_.get() + headerLength_, capacity_ - headerLength_}; }

  protected:
    std::size_t headerLength() const { return headerLength_; }
    DriverChannel& channel() const { return channel_; }

  private:
    std::unique_ptr<std::uint8_t[]> buffer_;
    std::size_t capacity_ = 0;
    DriverChannel& channel_;
    int result_ = 0;
    Outcome outcome_ = Outcome::success;
    std::size_t headerLength_ = req_param_t::wireSize;
    req_param_t header_;
};
