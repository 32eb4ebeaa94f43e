// The codes with which the driver reports states. It may report others, which have no meaning here.
#pragma once

#include <cstdint>

// Services. The codes between absent and running are stages of starting.
enum LecState : std::uint32_t {
    lecAbsent = 0,
    lecOnPvcs = 1,  // starting, or running on PVCs only
    lecJoined = 6,
};
enum LesState : std::uint32_t { lesAbsent = 0, lesServing = 1 };
enum LecsState : std::uint32_t { lecsAbsent = 0, lecsRunning = 4 };
enum IpState : std::uint32_t { ipAbsent = 0, ipRunning = 5 };

// The kind of the physical link.
enum LinkKind : std::uint32_t { link25 = 1, linkMultimode = 2, linkSingleMode = 3, link155Utp = 4 };

// UNI signalling, its AAL (SSCOP), and the registration of addresses through ILMI.
enum SigState : std::int16_t { sigDisconnected = 0, sigReady = 1, sigNotConfigured = 255 };
enum SaalState : std::int16_t {
    saalIdle = 0,
    saalOutgoingConnection = 1,
    saalIncomingConnection = 2,
    saalOutgoingDisconnection = 3,
    saalOutgoingResync = 4,
    saalIncomingResync = 5,
    saalOutgoingRecovery = 6,
    saalIncomingRecovery = 7,
    saalRecoveryResponse = 8,
    saalDataTransfer = 9,
    saalNotConfigured = 255,
};
enum IlmiState : std::int16_t {
    ilmiDisabled = 0,
    ilmiRegistering = 1,
    ilmiRegistered = 2,
    ilmiStatic = 3,
    ilmiNotConfigured = 255,
};

// Entries of the table of an LES's clients, and of the Classical IP client's connections.
enum BusState : std::int16_t { busIdle = 0, busSignallingA = 1, busSignallingB = 2, busActive = 3 };
enum LmacState : std::int16_t {
    lmacUnused = 0,
    lmacVcc = 1,
    lmacActive = 2,
    lmacArp = 3,
    lmacInArp = 4,
    lmacReverifying = 5,
};
