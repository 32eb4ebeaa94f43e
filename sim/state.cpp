#include "sim/state.h"

#include "sim/services.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

// A second a step: long enough to be seen in a window that is refreshed every second, short enough to wait
// for.
constexpr Stage lecStages[] = {{0, 1}, {1000, 2}, {2000, 3}, {3000, 4}, {4000, 5}, {5000, 6}};
constexpr Stage lesStages[] = {{0, 1}};
constexpr Stage lecsStages[] = {{0, 1}, {1000, 2}, {2000, 3}, {3000, 4}};
constexpr Stage ipStages[] = {{0, 1}, {1000, 2}, {2000, 3}, {3000, 4}, {4000, 5}};
constexpr Stage signallingStages[] = {{0, 1}, {1000, 2}, {2000, 3}};
static_assert(std::size(signallingStages) == sigStages);

constexpr Millis lesBusDelay = 2000;  // from the start of an LES until its BUS serves too

// Used while no network prefix is configured. The administrative part belongs to nobody.
constexpr std::string_view defaultPrefix = "4709990000000000a03e000101";
constexpr std::string_view noPrefix = "40000000000000000000000000";

// Selectors of an adapter's servers; clients use 0.
constexpr std::uint8_t lesSelector = 0x10, busSelector = 0x20;

constexpr Rid stateRequest[] = {Rid::LecState, Rid::LesState, Rid::LecsState, Rid::IpState};

}  // namespace

std::span<const Stage> stages(Service service) {
    switch (service) {
    case Service::Lec:
        return lecStages;
    case Service::Les:
        return lesStages;
    case Service::Lecs:
        return lecsStages;
    case Service::Ip:
        return ipStages;
    case Service::Sig:
        break;
    }
    return signallingStages;
}

State::State(const AtmDevices& config, std::array<bool, adapterCount> present, std::uint64_t seed)
    : config_(config), present_(present), seed_(seed) {
    load(*this);
}

Life& State::life(Service service, int adapter, int unit) {
    return lives_[{service, adapter, unit}];
}

const Life& State::life(Service service, int adapter, int unit) const {
    static const Life none;
    const auto found = lives_.find({service, adapter, unit});
    return found == lives_.end() ? none : found->second;
}

std::uint32_t State::code(Service service, int adapter, int unit) const {
    if (service != Service::Sig && !forced.empty()) {
        const Rid reply = stateRequest[asIndex(service)];
        const auto found = forced.find({reply, adapter, unit, 0, 0});
        if (found != forced.end()) return static_cast<std::uint32_t>(getNumber(found->second));
    }
    const Life& one = life(service, adapter, unit);
    if (!one.enabled || !present(adapter)) return 0;
    const std::span<const Stage> path = stages(service);
    // A client on PVCs only has no server to register with: it stays in its first state and works there.
    if (service == Service::Lec && config_.lec[asIndex(adapter)][asIndex(unit)].pvcOnly)
        return path.front().code;
    if (service == Service::Ip && config_.ip1577[asIndex(adapter)].pvcOnly) return path.back().code;
    std::uint32_t code = path.front().code;
    for (const Stage& stage : path)
        if (now_ - one.startedAt >= stage.from) code = stage.code;
    return code;
}

bool State::up(Service service, int adapter, int unit) const {
    if (service == Service::Les && now_ < upSince(service, adapter, unit)) return false;
    return code(service, adapter, unit) == stages(service).back().code;
}

Millis State::upSince(Service service, int adapter, int unit) const {
    const Millis started = life(service, adapter, unit).startedAt;
    return started + (service == Service::Les ? lesBusDelay : stages(service).back().from);
}

std::uint64_t State::hash(std::initializer_list<std::uint64_t> parts) const {
    // The finaliser of splitmix64, chained: every bit of every part reaches every bit of the result.
    std::uint64_t value = seed_;
    for (const std::uint64_t part : parts) {
        value += part + 0x9e3779b97f4a7c15;
        value = (value ^ value >> 30) * 0xbf58476d1ce4e5b9;
        value = (value ^ value >> 27) * 0x94d049bb133111eb;
        value ^= value >> 31;
    }
    return value;
}

std::uint64_t State::counter(std::uint64_t key, std::uint32_t perKilosecond, Millis elapsed) const {
    if (elapsed <= 0) return 0;
    const std::uint64_t chosen = hash({key, perKilosecond});
    const double rate = perKilosecond / 1000.0 * (0.5 + static_cast<double>(chosen % 1000) / 1000.0);
    // Traffic swells and ebbs by six tenths over about half a minute; below 1, so that no counter falls.
    const double seconds = static_cast<double>(elapsed) / 1000.0;
    const double phase = static_cast<double>(chosen >> 32 & 0xff);
    const double flow = seconds + 3 * (std::sin(seconds / 5 + phase) - std::sin(phase));
    return static_cast<std::uint64_t>(rate * std::max(flow, 0.0));
}

MacBytes State::mac(int adapter) const {
    if (!forced.empty()) {
        const auto found = forced.find({Rid::BoardMac, adapter, 0, 0, 0});
        if (found != forced.end()) {
            MacBytes result{};
            std::copy_n(found->second.begin(), result.size(), result.begin());
            return result;
        }
    }
    // 16 apart: an adapter's clients use the five addresses from its own on.
    return {0x00, 0xa0, 0x3e, 0x00, 0x00, static_cast<std::uint8_t>(1 + 0x10 * adapter)};
}

MacBytes State::lecMac(int adapter, int lec) const {
    MacBytes result = mac(adapter);
    result[5] = static_cast<std::uint8_t>(result[5] + lec);
    return result;
}

AtmBytes State::address(int adapter, const MacBytes& esi, std::uint8_t selector) const {
    atmAddress whole = config_.sig[asIndex(adapter)].address;
    if (whole.digits().substr(0, noPrefix.size()) == noPrefix) whole = defaultPrefix;
    AtmBytes result{};
    whole.toHex(result);
    std::copy(esi.begin(), esi.end(), result.begin() + 13);
    result[19] = selector;
    return result;
}

AtmBytes State::lesAddress(int adapter, int les) const {
    return address(adapter, mac(adapter), static_cast<std::uint8_t>(lesSelector + les));
}

AtmBytes State::busAddress(int adapter, int les) const {
    return address(adapter, mac(adapter), static_cast<std::uint8_t>(busSelector + les));
}

AtmBytes State::lecsAddress(int adapter) const {
    AtmBytes result{};
    config_.lecs[asIndex(adapter)].address.toHex(result);
    return result;
}

State::Home State::home(int adapter, int lec) const {
    const AtmLEC& client = config_.lec[asIndex(adapter)][asIndex(lec)];
    for (int a = 0; a < adapterCount; ++a)
        for (int l = 0; l < lesCount; ++l) {
            const AtmLES& server = config_.les[asIndex(a)][asIndex(l)];
            if (present(a) && server.enabled && !client.elanName.empty() &&
                server.elanName == client.elanName)
                return {lesAddress(a, l), busAddress(a, l), std::pair(a, l)};
        }
    Home away{};
    if (client.useLecs) {
        const MacBytes server{0x00, 0xa0, 0x3e,
                              0xff, 0x00, static_cast<std::uint8_t>(adapter * lecCount + lec)};
        away.les = address(adapter, server, lesSelector);
    } else {
        client.address.toHex(away.les);
    }
    away.bus = away.les;
    away.bus[19] = static_cast<std::uint8_t>(away.bus[19] + busSelector - lesSelector);
    return away;
}

bool State::learned(int adapter, int lec) const {
    if (!up(Service::Lecs, adapter, 0) || !up(Service::Lec, adapter, lec) ||
        !config_.lec[asIndex(adapter)][asIndex(lec)].useLecs)
        return false;
    const auto dropped = forgotten.find({adapter, lec});
    if (dropped != forgotten.end() && dropped->second >= upSince(Service::Lec, adapter, lec)) return false;
    const Home where = home(adapter, lec);
    return where.local && where.local->first == adapter;
}

esiSelector State::lecEsi(int adapter, int lec) const {
    esiSelector::Bytes bytes{};
    std::ranges::copy(lecMac(adapter, lec), bytes.begin());
    return esiSelector(bytes);
}

}  // namespace sim
