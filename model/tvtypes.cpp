#include "model/tvtypes.h"

#include "model/statecodes.h"

#include <span>

namespace {

struct CodeText {
    std::int16_t code;
    const char* text;
};

constexpr CodeText mtuTexts[] = {{1, "1516"}, {2, "4544"}, {3, "9234"}, {4, "18190"}};

constexpr CodeText elanTexts[] = {{1, "Ethernet"}, {2, "Token Ring"}};

constexpr CodeText busTexts[] = {{busIdle, "Idle"},
                                 {busSignallingA, "Signalling A"},
                                 {busSignallingB, "Signalling B"},
                                 {busActive, "Active"}};

constexpr CodeText saalTexts[] = {{saalIdle, "SSCOP Idle"},
                                  {saalOutgoingConnection, "Outgoing Connection Pending"},
                                  {saalIncomingConnection, "Incoming Connection Pending"},
                                  {saalOutgoingDisconnection, "Outgoing disconnection pending"},
                                  {saalOutgoingResync, "Outgoing resync pending"},
                                  {saalIncomingResync, "Incoming resync pending"},
                                  {saalOutgoingRecovery, "Outgoing recovery pending"},
                                  {saalIncomingRecovery, "Incoming recovery pending"},
                                  {saalRecoveryResponse, "Recovery response pending"},
                                  {saalDataTransfer, "Data transfer ready"},
                                  {saalNotConfigured, "SSCOP Not configured"}};

constexpr CodeText sigTexts[] = {{sigDisconnected, "Signalling Disconnected"},
                                 {sigReady, "Signalling Ready"},
                                 {sigNotConfigured, "Signalling Not configured"}};

constexpr CodeText ilmiTexts[] = {{ilmiDisabled, "ILMI Disabled"},
                                  {ilmiRegistering, "ILMI Registering"},
                                  {ilmiRegistered, "ILMI Registered"},
                                  {ilmiStatic, "ILMI Static Registration"},
                                  {ilmiNotConfigured, "ILMI Not configured"}};

constexpr CodeText lmacTexts[] = {{lmacUnused, "Unused MAC entry"},
                                  {lmacVcc, "Waiting for VCC connection"},
                                  {lmacActive, "Active"},
                                  {lmacArp, "Waiting for ARP response"},
                                  {lmacInArp, "Waiting for InARP response"},
                                  {lmacReverifying, "Reverifying connection"}};

const char* textOf(std::span<const CodeText> table, std::int16_t code) {
    for (const CodeText& row : table)
        if (row.code == code) return row.text;
    return "XXXX";
}

}  // namespace

const char* MtuTypeToString(std::int16_t code) {
    return textOf(mtuTexts, code);
}
const char* ElanTypeToString(std::int16_t code) {
    return textOf(elanTexts, code);
}
const char* BusStateToString(std::int16_t code) {
    return textOf(busTexts, code);
}
const char* SaalStateToString(std::int16_t code) {
    return textOf(saalTexts, code);
}
const char* SigStateToString(std::int16_t code) {
    return textOf(sigTexts, code);
}
const char* IlmiStateToString(std::int16_t code) {
    return textOf(ilmiTexts, code);
}
const char* LmacStateToString(std::int16_t code) {
    return textOf(lmacTexts, code);
}

int IlmiStateToColor(std::int16_t code) {
    if (code == ilmiRegistered || code == ilmiStatic) return lampUp;
    return code == ilmiDisabled || code == ilmiNotConfigured ? lampOff : lampTransition;
}

int SaalStateToColor(std::int16_t code) {
    if (code == saalDataTransfer) return lampUp;
    return code == saalNotConfigured ? lampOff : lampTransition;
}

int SigStateToColor(std::int16_t code) {
    if (code == sigReady) return lampUp;
    return code == sigNotConfigured ? lampOff : lampTransition;
}
