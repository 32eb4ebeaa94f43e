#include "driver/reqparam.h"

#include "platform/debuglog.h"

#include <algorithm>
#include <fmt/ostream.h>

reqParam::reqParam(DriverChannel& channel, const req_param_t& header) : channel_(channel), header_(header) {
    SetupMsg(header.Size);
}

std::span<std::uint8_t> reqParam::SetupMsg(std::size_t size) {
    size = std::max(size, req_param_t::wireSize);
    if (capacity_ < size) {
        fmt::print(tvlog, "Realloc:Old Size-{:6} NewSize-{:6}", capacity_, size);
        tvlog << std::endl;
        buffer_ = std::make_unique<std::uint8_t[]>(size);
        capacity_ = size;
    }
    headerLength_ = req_param_t::wireSize;
    return data();
}

int reqParam::daiRequest() {
    const std::span<std::uint8_t> message(buffer_.get(), capacity_);
    header_.Resp = respUnanswered;
    header_.pack(message.first<req_param_t::wireSize>());
    tvlog.line(header_);
    result_ = channel_.request(message);
    outcome_ = channel_.outcome();

    const req_param_t reply = req_param_t::unpack(message.first<req_param_t::wireSize>());
    tvlog.line(reply);
    if (result_ != 0) tvlog.line("Dai Request Failure");
    header_.RowM = reply.RowM;
    header_.NRow = reply.NRow;
    header_.Resp = reply.Resp;
    return result_;
}
