// What the simulated driver knows: its configuration as loaded and changed by requests, its clock, what runs
// since when, and what commands have forced.
#pragma once

#include "model/tvdatbuf.h"
#include "platform/index.h"
#include "sim/clock.h"
#include "sim/requests.h"
#include "sim/settings.h"

#include <array>
#include <compare>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sim {

enum class Service : std::uint8_t { Lec, Les, Lecs, Ip, Sig };

// One instance of a service.
struct Life {
    bool enabled = false;
    Millis startedAt = 0;
    bool loaded = false;  // LECS: has a configuration, started or not
};

// What the trace switch turns on and off. The codes are those of its request.
struct TraceSwitch {
    std::string_view name;
    std::uint8_t code;
    bool on = false;
};

// Where a forced value stands. Row 0: not in a table; rows count from 1.
struct Place {
    Rid request;
    int adapter, unit, row;
    std::size_t field;                               // index into the request's fields
    auto operator<=>(const Place&) const = default;  // NOLINT(modernize-use-nullptr): the generated 0
};

class State {
  public:
    // The driver just loaded: the services that the configuration enables run, with their lists (services.h).
    // `present` says which adapters the host has. `seed` chooses rates, learned peers and their times.
    State(const AtmDevices& config, std::array<bool, adapterCount> present, std::uint64_t seed);

    // The running configuration. Clients that do not run have no PVCs; servers' clients are in `mappings`.
    const AtmDevices& config() const { return config_; }
    AtmDevices& config() { return config_; }
    bool present(int adapter) const {
        return adapter >= 0 && adapter < adapterCount && present_[asIndex(adapter)];
    }
    Clock& clock() { return clock_; }
    Millis now() const { return now_; }

    // Takes the time from the clock. All values of one reply belong to one instant.
    void tick() { now_ = clock_.now(); }

    const Life& life(Service service, int adapter, int unit) const;
    Life& life(Service service, int adapter, int unit);

    // The state code as reported: forced, or the stage that the instance has reached by now.
    std::uint32_t code(Service service, int adapter, int unit) const;
    bool up(Service service, int adapter, int unit) const;
    Millis upSince(Service service, int adapter, int unit) const;

    // A number that depends only on the seed and the parts.
    std::uint64_t hash(std::initializer_list<std::uint64_t> parts) const;

    // A counter that has grown for `elapsed`, at a rate that `key` chooses between half of `perKilosecond`
    // and one and a half times that. It never falls while `elapsed` grows.
    std::uint64_t counter(std::uint64_t key, std::uint32_t perKilosecond, Millis elapsed) const;

    // Addresses. `selector` tells the services of one adapter apart.
    MacBytes mac(int adapter) const;
    MacBytes lecMac(int adapter, int lec) const;
    AtmBytes address(int adapter, const MacBytes& esi, std::uint8_t selector) const;
    AtmBytes lesAddress(int adapter, int les) const;
    AtmBytes busAddress(int adapter, int les) const;
    AtmBytes lecsAddress(int adapter) const;

    // The server that a client registers with: its addresses and, on this host, its adapter and index.
    struct Home {
        AtmBytes les, bus;
        std::optional<std::pair<int, int>> local;
    };
    Home home(int adapter, int lec) const;

    // The mappings of each adapter's LECS. A stopped LECS keeps them until it is loaded again, since the
    // clients that have joined stay with their servers.
    std::array<std::vector<Mapping>, adapterCount> mappings;

    // For each adapter the VCIs of the PVCs of all its clients, with the time when each was added.
    std::array<std::unordered_map<std::uint16_t, Millis>, adapterCount> pvcs;

    // Clients of this host whose learned mapping was deleted, by adapter and client, with the time of the
    // deletion. The LECS learns such a client again when one of the two is restarted.
    std::map<std::pair<int, int>, Millis> forgotten;

    std::array<TraceSwitch, 3> traces{{{"api", 1}, {"signalling", 2}, {"ilmi", 4}}};

    // A line for each list entry of the files that the driver refused when it was loaded.
    std::vector<std::string> leftOut;

    // Whether the running LECS has learned this client of the host, by sending it to a server of its adapter.
    bool learned(int adapter, int lec) const;
    esiSelector lecEsi(int adapter, int lec) const;

    // What commands have forced: field values as raw bytes, and row counts by table, adapter and instance.
    std::map<Place, std::vector<std::uint8_t>> forced;
    std::map<std::tuple<Rid, int, int>, std::size_t> forcedRows;

  private:
    AtmDevices config_;
    std::array<bool, adapterCount> present_;
    std::uint64_t seed_;
    Clock clock_;
    Millis now_ = 0;
    std::map<std::tuple<Service, int, int>, Life> lives_;
};

// State codes by time since the start of an instance; the last is "up".
struct Stage {
    Millis from;
    std::uint32_t code;
};
std::span<const Stage> stages(Service service);

constexpr int sigStages = 3;  // of Service::Sig: 1 SAAL connecting, 2 SAAL ready, 3 signalling and ILMI ready

}  // namespace sim
