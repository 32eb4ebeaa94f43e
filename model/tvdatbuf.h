// Configuration records of every service, the device table that holds them, and the transfer buffers through
// which the configuration dialog edits them.
//
// Records hold what the parameter file holds: 32-bit numbers, addresses as value types. Transfer buffers hold
// what the dialog's controls hold: signed 16-bit numbers, 0-based list positions, addresses as digit strings
// without separators (network prefix 26 digits, ESI and selector 14). A buffer is assigned from its record
// and a record from its buffer. A number that does not fit into 16 bits is preserved unless the dialog
// changes it.
#pragma once

#include "model/fixedtext.h"
#include "model/ui_types.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

constexpr int adapterCount = 4;
constexpr int lecCount = 4;  // per adapter
constexpr int lesCount = 8;  // per adapter

// The records of the configuration. Flags are 0 or 1 unless noted; other values from a file are preserved.

// A PVC of a LAN Emulation Client. The VPI of every circuit is 0.
struct AtmBridgedPvc {
    macAddress mac;
    std::uint16_t vci = 0;           // the driver checks its range
    std::int32_t encapsulation = 0;  // 0 Null, 1 LLC/SNAP
    std::int32_t broadcast = 0;      // 1 broadcast, 0 non-broadcast
    std::int32_t rate = 0;           // MB/s

    bool operator==(const AtmBridgedPvc&) const = default;
};

// A PVC of the Classical IP client. The broadcast flag is stored, but has a meaning for bridged PVCs only.
struct AtmRoutedPvc {
    ipAddress ip;
    std::uint16_t vci = 0;
    std::int32_t encapsulation = 0;
    std::int32_t broadcast = 0;
    std::int32_t rate = 0;

    bool operator==(const AtmRoutedPvc&) const = default;
};

struct LECXferBuffer;
struct LESXferBuffer;
struct LECSXferBuffer;
struct IP1577XferBuffer;
struct SigXferBuffer;

// Texts, sizes with the terminating NUL.
using ElanName = FixedText<32>;
using FileName = FixedText<256>;
using AddressText = FixedText<18>;  // dotted decimal

// LAN Emulation Client.
struct AtmLEC {
    std::int32_t enabled = 0;
    std::int32_t pvcOnly = 0;  // 1: runs on PVCs only, without LAN Emulation servers
    ElanName elanName;
    std::int32_t mtuClass = 1;  // 1 = 1516, 2 = 4544, 3 = 9234, 4 = 18190
    std::int32_t l3Mtu = 1;     // bytes of a layer-3 packet, as entered
    std::int32_t useLecs = 1;   // 0: the address is that of the LES
    std::int32_t elanType = 1;  // 0 Ethernet, 1 Token Ring
    atmAddress address;         // of the LECS, or of the LES
    macAddress mac;             // derived from the adapter's at start-up, not stored
    FileName pvcFile;
    std::vector<AtmBridgedPvc> pvcs;

    AtmLEC& operator=(const LECXferBuffer& buffer);
    bool operator==(const AtmLEC&) const = default;
};

// LAN Emulation Server with its BUS.
struct AtmLES {
    std::int32_t enabled = 0;
    ElanName elanName;
    std::int32_t mtuClass = 1;
    std::int32_t elanType = 1;  // 1 Ethernet, 2 Token Ring
    std::int32_t strictMtu = 0;
    std::int32_t strictName = 0;
    FileName clientFile;
    std::vector<esiSelector> clients;  // mapped to this server's ELAN

    AtmLES& operator=(const LESXferBuffer& buffer);
    bool operator==(const AtmLES&) const = default;
};

// LAN Emulation Configuration Server.
struct AtmLECS {
    std::int32_t enabled = 0;
    std::int32_t elanType = 1;  // default type: 1 Ethernet, 2 Token Ring
    std::int32_t etherMtuClass = 1;
    std::int32_t tokenRingMtuClass = 1;
    atmAddress address;

    AtmLECS& operator=(const LECSXferBuffer& buffer);
    bool operator==(const AtmLECS&) const = default;
};

// Classical IP over ATM client (RFC 1577).
struct AtmIP1577 {
    std::int32_t enabled = 0;
    std::int32_t pvcOnly = 0;  // 1: PVCs only, no ATMARP server
    AddressText serverIp;      // ATMARP server
    AddressText subnetMask;
    AddressText ip;      // the client's own
    atmAddress address;  // of the ATMARP server
    macAddress mac;      // derived from the adapter's at start-up, not stored
    FileName pvcFile;
    std::vector<AtmRoutedPvc> pvcs;

    AtmIP1577& operator=(const IP1577XferBuffer& buffer);
    bool operator==(const AtmIP1577&) const = default;
};

// UNI signalling and ILMI address registration.
struct AtmSig {
    std::int32_t uniRevision = 0;  // 30 = UNI 3.0, 31 = UNI 3.1
    std::int32_t addressRegistration = 1;
    std::int32_t portChangeDetect = 1;
    std::int32_t registerOtherPrefixes = 1;
    atmAddress address;  // only the network prefix is used

    AtmSig& operator=(const SigXferBuffer& buffer);
    bool operator==(const AtmSig&) const = default;
};

// Everything of up to four adapters, by adapter index (0 to 3) and then instance.
struct AtmDevices {
    std::array<std::array<AtmLEC, lecCount>, adapterCount> lec;
    std::array<std::array<AtmLES, lesCount>, adapterCount> les;
    std::array<AtmLECS, adapterCount> lecs;
    std::array<AtmIP1577, adapterCount> ip1577;
    std::array<AtmSig, adapterCount> sig;
    std::array<std::int32_t, adapterCount> interruptNumber{-1, -1, -1, -1};  // -1: detect automatically
};

struct LECXferBuffer {
    std::string elanName;
    std::string networkPrefix;
    std::string esiSelector;
    std::string macText;  // for display only: with each byte's bits reversed on a Token Ring ELAN
    std::int16_t l3Mtu = 0;
    std::int16_t useLecs = 0;
    std::int16_t enabled = 0;
    std::int16_t pvcOnly = 0;
    std::int16_t mtuPosition = 0;
    std::int16_t elanType = 0;
    std::vector<AtmBridgedPvc> pvcs;

    LECXferBuffer& operator=(const AtmLEC& record);
};

struct LESXferBuffer {
    std::int16_t mtuPosition = 0;
    std::int16_t enabled = 0;
    std::int16_t strictMtu = 0;
    std::int16_t strictName = 0;
    std::int16_t elanType = 0;
    std::string elanName;
    std::vector<esiSelector> clients;

    LESXferBuffer& operator=(const AtmLES& record);
};

struct LECSXferBuffer {
    std::int16_t etherMtuPosition = 0;
    std::int16_t tokenRingMtuPosition = 0;
    std::int16_t enabled = 0;
    std::int16_t elanType = 0;
    std::string networkPrefix;
    std::string esiSelector;

    LECSXferBuffer& operator=(const AtmLECS& record);
};

struct IP1577XferBuffer {
    std::int16_t enabled = 0;
    std::int16_t pvcOnly = 0;
    std::int16_t arpServerHere = 0;  // 1: this adapter is itself the ATMARP server; derived, not stored
    std::string networkPrefix;
    std::string esiSelector;
    std::string serverIp;
    std::string ip;
    std::string subnetMask;
    std::vector<AtmRoutedPvc> pvcs;

    IP1577XferBuffer& operator=(const AtmIP1577& record);
};

struct SigXferBuffer {
    std::int16_t uniPosition = 0;  // 0 = "3.0", 1 = "3.1"
    std::int16_t addressRegistration = 0;
    std::int16_t portChangeDetect = 0;
    std::int16_t registerOtherPrefixes = 0;
    std::string networkPrefix;

    SigXferBuffer& operator=(const AtmSig& record);
};

// Change detection. The lists and the MAC text are not compared, since list edits are sent to the driver at
// once.
bool operator==(const LECXferBuffer& a, const LECXferBuffer& b);
bool operator==(const LECSXferBuffer& a, const LECSXferBuffer& b);
bool operator==(const IP1577XferBuffer& a, const IP1577XferBuffer& b);
bool sameSettings(const LESXferBuffer& a, const LESXferBuffer& b);
bool sameSettings(const SigXferBuffer& a, const SigXferBuffer& b);

// The four numbers and the prefix, separated by single blanks.
std::ostream& operator<<(std::ostream& out, const SigXferBuffer& buffer);

extern AtmDevices atmDevices;

// The buffers of the adapter that the configuration dialog edits, and copies of their values when it was
// opened.
extern std::array<LECXferBuffer, lecCount> xferBuffer, prevLecBuffer;
extern std::array<LESXferBuffer, lesCount> lesXferBuffer, prevLesBuffer;
extern LECSXferBuffer lecsXferBuffer, prevLecsBuffer;
extern IP1577XferBuffer ip1577XferBuffer, prevIP1577Buffer;
extern SigXferBuffer sigXferBuffer, prevSigBuffer;
