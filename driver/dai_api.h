// The calls to the ATM driver: open the access device, hand over a request message and get it back answered,
// close. channel.h keeps a descriptor open and closes it. Every message begins with a 16-byte header,
// little-endian on the wire.
//
// What the driver writes into a message is checked before it is used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>

extern char devbase[];  // system path of the access device

// The value of Resp in every request. A driver that does not change it has failed the request.
constexpr std::uint16_t respUnanswered = 0xDEAD;

// The message header.
struct req_param_t {
    static constexpr std::size_t wireSize = 16;

    std::uint16_t Prim = 0;  // the driver service
    std::uint16_t Type = 0;  // operation of the service
    std::uint8_t Link = 0;   // adapter, from 0
    std::uint8_t Unit = 0;   // instance within the adapter, from 0; services with one instance ignore it
    std::uint16_t Size = 0;  // bytes of the message, header included; the driver may write all of them
    std::uint16_t SzIO = 0;  // leading bytes of the message that are input to the driver
    std::uint16_t RowM = 0;  // first row wanted, from 1; the driver advances it
    std::uint16_t NRow = 0;  // rows wanted; in the reply rows delivered or available
    std::uint16_t Resp = 0;  // 0: success, else an error code of the driver or of dai_syserr

    void pack(std::span<std::uint8_t, wireSize> wire) const;
    static req_param_t unpack(std::span<const std::uint8_t, wireSize> wire);
    bool operator==(const req_param_t&) const = default;
};

// "Prim:129 Type:1 Link:0 Unit:0 Size:22 SzIO:16 RowM:1 NRow:0 Resp:0", as the debug log shows it.
std::ostream& operator<<(std::ostream& out, const req_param_t& header);

// Opens the access device; oflag is O_RDONLY or O_RDWR. Returns 0 and the descriptor, or -1 and a descriptor
// of -1 (errno says why). The context is ignored.
int dai_open(int context, int oflag, int& descriptorOut);

// Sends the message, as many bytes as its header's Size says, and waits for the reply, which comes back in
// the same bytes. Returns 0 when the driver reported success, else -1, and Resp in the message holds the
// reason: the driver's own code, or dai_syserr of the system's error, which is in errno; that is 0 after the
// driver's own. A Size beyond the bytes given (206) and
// a descriptor that is no channel (201) fail without a call. A message too short for a header fails
// untouched. `received` gets the number of bytes that came back, 0 when the call failed; behind them
// the message keeps what it had.
int dai_req(int descriptor, std::span<std::uint8_t> message, std::size_t* received = nullptr);

// Closes the descriptor, unless it is 0. Always 0. The context is ignored.
int dai_close(int context, int descriptor);

// The error code for an errno value: 201 no driver or device, 202 busy, 203 permission denied, 205 out of
// buffer space, 206 invalid request, 207 anything else.
int dai_syserr(int systemError);
