// A change of adapter 1 as OK makes it: lock, reading, merge, save and history.
#pragma once

#include "bench/pairs.h"
#include "change/adapterchange.h"

#include <cstdlib>
#include <fmt/core.h>

// "lists": one entry in each of the five lists that an adapter's clients have.
enum class Edit { nothing, value, lists };

class OneChange {
  public:
    static constexpr std::size_t entries = 1000, clients = 500;  // of full lists

    OneChange() {
        if (!configuration_.read()) fail("the parameter file cannot be read");
    }

    // Gives the clients of all adapters PVCs, and the servers that have a client table clients.
    void fill() {
        const auto number = [](auto& pvcs) {
            pvcs.resize(entries);
            for (std::size_t i = 0; i < entries; ++i) pvcs[i].vci = static_cast<std::uint16_t>(32 + i);
        };
        for (std::size_t a = 0; a < devices_.lec.size(); ++a) {
            const AtmDevices before = devices_;
            for (AtmLEC& lec : devices_.lec[a]) number(lec.pvcs);
            number(devices_.ip1577[a].pvcs);
            for (AtmLES& les : devices_.les[a])
                if (!les.clientFile.empty()) les.clients.resize(clients);
            confirm({.adapters = {static_cast<int>(a)}, .before = before});
        }
    }

    // What the file names of adapter 1's lists are; they have full length only after fill().
    std::vector<std::string> listFiles() const {
        std::vector<std::string> names{devices_.ip1577[0].pvcFile.str()};
        for (const AtmLEC& lec : devices_.lec[0]) names.push_back(lec.pvcFile.str());
        return names;
    }

    // Returns the milliseconds from the press of OK. With `driver` the changed services are restarted.
    double make(Edit edit, bool driver = false) {
        ChangeOrder order{.adapters = {0}, .before = devices_, .driver = driver};
        AtmLEC& first = devices_.lec[0][0];
        if (edit == Edit::value) first.l3Mtu = first.l3Mtu == 1516 ? 4544 : 1516;
        order.changed[0].lec.set(0, edit == Edit::value);
        if (edit == Edit::lists) {
            for (AtmLEC& lec : devices_.lec[0])
                if (!lec.pvcs.empty()) lec.pvcs.back().rate ^= 1;
            if (!devices_.ip1577[0].pvcs.empty()) devices_.ip1577[0].pvcs.back().rate ^= 1;
        }
        return confirm(std::move(order));
    }

  private:
    double confirm(ChangeOrder order) {
        const double begin = milliseconds();
        AdapterChange change(configuration_, std::move(order));
        if (change.run() || !change.result().failures.empty()) fail("not saved");
        return milliseconds() - begin;
    }
    static void fail(const char* reason) {
        fmt::print(stderr, "{}\n", reason);
        std::exit(EXIT_FAILURE);
    }

    AtmDevices devices_;
    Configuration configuration_{"bench", devices_};
};
