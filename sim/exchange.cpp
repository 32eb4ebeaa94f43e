#include "sim/exchange.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace sim {

namespace {

constexpr std::int32_t opOpen = 1, opIoctl = 2;
constexpr std::int32_t commandCode = 0x4c00;
constexpr std::int32_t readOnly = 0, readWrite = 2;

std::int32_t intAt(ConstBytes packet, std::size_t index) {
    std::int32_t value = 0;
    std::memcpy(&value, packet.data() + index * sizeof value, sizeof value);
    return value;
}

template <std::size_t N>
std::vector<std::uint8_t> packed(const std::array<std::int32_t, N>& head, ConstBytes message = {}) {
    std::vector<std::uint8_t> packet(sizeof head + message.size());
    std::memcpy(packet.data(), head.data(), sizeof head);
    std::copy(message.begin(), message.end(), packet.begin() + sizeof head);
    return packet;
}

Outgoing hangUp() {
    Outgoing out;
    out.hangUp = true;
    return out;
}

// What the call would give back, before it is packed; faults work on this.
struct Result {
    std::int32_t id, error;
    std::vector<std::uint8_t> message;
};

std::vector<std::uint8_t> broken(const Result& result, Malform form, std::size_t asked) {
    constexpr std::size_t stub = 6;     // neither an id and an error nor less than an id
    constexpr std::size_t excess = 32;  // beyond what was asked for
    const auto size = static_cast<std::int32_t>(result.message.size());
    const std::array whole{result.id, result.error, 0, size};
    switch (form) {
    case Malform::Short: {
        std::vector<std::uint8_t> packet = packed(whole);
        packet.resize(stub);
        return packet;
    }
    case Malform::Long: {
        const std::vector<std::uint8_t> message(asked + excess, unnamedByte);
        return packed(std::array{result.id, 0, 0, static_cast<std::int32_t>(message.size())}, message);
    }
    case Malform::Lie:
        return packed(std::array{result.id, 0, 0, size + 1}, result.message);
    case Malform::Negative:
        return packed(std::array{result.id, 0, 0, -1}, result.message);
    case Malform::Id:
        break;
    }
    return packed(std::array{result.id + 1, result.error, 0, size}, result.message);
}

void setWord(std::vector<std::uint8_t>& message, std::size_t offset, std::int32_t value) {
    if (message.size() >= offset + 2)
        putNumber(Bytes(message).subspan(offset, 2), static_cast<std::uint64_t>(value));
}

constexpr std::size_t nRowOffset = 12, respOffset = 14;

}  // namespace

Outgoing Exchange::handle(Session& session, ConstBytes packet) {
    constexpr std::size_t openSize = 3 * sizeof(std::int32_t), ioctlHead = 5 * sizeof(std::int32_t);
    if (packet.size() >= openSize && packet.size() <= maxPacket) {
        const std::int32_t op = intAt(packet, 0), id = intAt(packet, 1);
        if (op == opOpen && packet.size() == openSize) return open(session, id, intAt(packet, 2));
        if (op == opIoctl && packet.size() >= ioctlHead &&
            static_cast<std::int64_t>(intAt(packet, 4)) ==
                static_cast<std::int64_t>(packet.size() - ioctlHead))
            return ioctl(session, id, intAt(packet, 2), packet.subspan(ioctlHead));
    }
    log_.malformed(state_, session.number, packet);
    return hangUp();
}

Outgoing Exchange::open(Session& session, std::int32_t id, std::int32_t flags) {
    Outgoing out;
    std::int32_t error = 0;
    if (session.opened || (flags != readOnly && flags != readWrite))
        error = EINVAL;
    else if (session.refused)
        error = EBUSY;
    else if (flags == readWrite && !session.caller.privileged)
        error = EACCES;
    for (const Fault& fault : faults_.strike(std::array<std::string_view, 1>{"open"})) {
        switch (fault.damage) {
        case Damage::Errno:
            error = fault.arg;
            break;
        case Damage::Late:
            out.delay += std::chrono::milliseconds(fault.arg);
            break;
        case Damage::HangUp:
            return hangUp();
        case Damage::Silent:
            return {};
        case Damage::Malformed:
            out.packet = broken({id, error, {}}, static_cast<Malform>(fault.arg), 0);
            break;
        default:
            break;  // what concerns messages has no meaning here
        }
    }
    if (error == 0) {
        session.opened = true;
        session.caller.writer = flags == readWrite;
    }
    log_.opened(state_, session.number, flags, error);
    if (out.packet.empty()) out.packet = packed(std::array{id, error});
    return out;
}

Outgoing Exchange::ioctl(Session& session, std::int32_t id, std::int32_t command, ConstBytes message) {
    state_.tick();
    Outgoing out;
    const bool taken = session.opened && command == commandCode;
    const Asked asked = taken ? identify(message) : Asked{};
    std::vector<std::string_view> names;
    if (asked.request) names = {asked.request->name, asked.request->target};
    if (asked.change) names.push_back(asked.change->name);
    const std::vector<Fault> struck = faults_.strike(names);
    Answer answered;
    if (!taken)
        answered.error = EINVAL;
    else if (std::none_of(struck.begin(), struck.end(),
                          [](const Fault& f) { return Faults::prevents(f.damage); }))
        answered = answer(state_, session.caller, asked, message);

    Result result{id, answered.error, std::move(answered.message)};
    std::size_t limit = message.size();
    std::string damage;
    std::optional<Malform> malform;
    bool silent = false;
    const auto unanswered = [&](std::int32_t resp) {
        result.error = 0;
        result.message.assign(message.begin(), message.end());
        setWord(result.message, respOffset, resp);
    };
    for (const Fault& fault : struck) {
        damage += (damage.empty() ? "fault " : "; ") + fault.text();
        switch (fault.damage) {
        case Damage::Resp:
            unanswered(fault.arg);
            break;
        case Damage::Errno:
            result.error = fault.arg;
            break;
        case Damage::Late:
            out.delay += std::chrono::milliseconds(fault.arg);
            break;
        case Damage::Short:
            limit = std::min(limit, static_cast<std::size_t>(fault.arg));
            break;
        case Damage::NRow:
            setWord(result.message, nRowOffset, fault.arg);
            break;
        case Damage::Dead:
            unanswered(unansweredResp);
            break;
        case Damage::Silent:
            silent = true;
            break;
        case Damage::Malformed:
            malform = static_cast<Malform>(fault.arg);
            break;
        case Damage::HangUp:
            out.hangUp = true;
            break;
        }
    }
    if (result.error) result.message.clear();
    log_.asked(state_, session.number, asked.name(), message, result.error, result.message, damage);
    if (out.hangUp || silent) return out;
    if (result.message.size() > limit) result.message.resize(limit);
    if (malform)
        out.packet = broken(result, *malform, message.size());
    else
        out.packet = packed(std::array{id, result.error, 0, static_cast<std::int32_t>(result.message.size())},
                            result.message);
    return out;
}

}  // namespace sim
