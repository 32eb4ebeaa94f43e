// What cannot be right in a configuration, and what is probably not meant. Nothing is forbidden: these are
// sentences for whoever edits it.
//
// Of a service that is not enabled nothing is said, since nothing runs with it.
#pragma once

#include "model/tvdatbuf.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

enum class Severity { warning, error };  // probably not meant; cannot work

// Everything of one adapter.
struct AdapterRecords {
    std::array<AtmLEC, lecCount> lec;
    std::array<AtmLES, lesCount> les;
    AtmLECS lecs;
    AtmIP1577 ip;
    AtmSig sig;
    std::uint32_t linkKind = 0;  // LinkKind, as the driver tells it; 0: not known

    AdapterRecords() = default;
    AdapterRecords(const AtmDevices& devices, int adapter);
};

// The number of a rule never changes, nor is it given to another one. The path is that of the setting within
// its adapter, "lec2.l3Mtu", or of an entry of a list, "lec2.pvcs[0]", with `part` for what it is about in
// it: "vci", "mac", "ip", "rate".
struct Finding {
    int number = 0;
    Severity severity = Severity::error;
    std::string path = {};
    std::string message = {};
    std::string part = {};

    bool operator==(const Finding&) const = default;
};

// In the order of the services and their settings; what concerns several services comes last.
std::vector<Finding> CheckAdapter(const AdapterRecords& records);
// Those about one service, "lec2", beside what the others have; of a rule that entries of lists break, the
// first one only. For whoever checks at every key: lists can have thousands of entries.
std::vector<Finding> CheckService(const AdapterRecords& records, std::string_view service);

// About an entry alone, whatever list it is in; without a path.
std::vector<Finding> CheckEntry(const AtmBridgedPvc& pvc);
std::vector<Finding> CheckEntry(const AtmRoutedPvc& pvc);
// With the address as it is typed, which may be none.
std::vector<Finding> CheckEntry(AtmRoutedPvc pvc, const std::string& address);

// That two circuits of an adapter have one VCI. `owner` is who has it already: "LEC 1".
Finding VciTwice(unsigned vci, std::string_view owner);
