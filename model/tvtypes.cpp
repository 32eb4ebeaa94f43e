#include "model/tvtypes.h"

#include "model/statecodes.h"

#include <iterator>
#include <span>
#include <type_traits>

namespace {

template <class Code> struct TextOf {
    Code code;
    const char* text;
};
using CodeText = TextOf<std::int16_t>;
using StateText = TextOf<std::uint32_t>;

constexpr CodeText mtuTexts[] = {{1, "1516"}, {2, "4544"}, {3, "9234"}, {4, "18190"}};

constexpr int mtuSizes[] = {1516, 4544, 9234, 18190};  // of the classes from 1

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

// Between absent and running a client goes through the phases of the LAN Emulation protocol, one by one.
constexpr StateText lecTexts[] = {{lecAbsent, "no such client"},
                                  {lecOnPvcs, "Starting"},
                                  {2, "Configuring"},
                                  {3, "Joining"},
                                  {4, "Registering"},
                                  {5, "Connecting to the BUS"},
                                  {lecJoined, "Joined"}};

constexpr StateText lesTexts[] = {{lesAbsent, "no such server"}, {lesServing, "Starting"}};

constexpr StateText lecsTexts[] = {{lecsAbsent, "no configuration server"},
                                   {1, "Starting"},
                                   {2, "Starting"},
                                   {3, "Starting"},
                                   {lecsRunning, "Running"}};

constexpr StateText ipTexts[] = {
    {ipAbsent, "no such client"}, {1, "Starting"}, {2, "Starting"}, {3, "Starting"}, {4, "Starting"},
    {ipRunning, "Running"}};

template <class Code>
const char* textOf(std::span<const TextOf<Code>> table, std::type_identity_t<Code> code) {
    for (const auto& row : table)
        if (row.code == code) return row.text;
    return textOfUnknown;
}

}  // namespace

const char textOfUnknown[] = "XXXX";

int MtuSize(std::int32_t mtuClass) {
    const bool known = mtuClass >= 1 && mtuClass <= std::ssize(mtuSizes);
    return known ? mtuSizes[mtuClass - 1] : 0;
}

const char* MtuTypeToString(std::int16_t code) {
    return textOf<std::int16_t>(mtuTexts, code);
}
const char* ElanTypeToString(std::int16_t code) {
    return textOf<std::int16_t>(elanTexts, code);
}
const char* BusStateToString(std::int16_t code) {
    return textOf<std::int16_t>(busTexts, code);
}
const char* SaalStateToString(std::int16_t code) {
    return textOf<std::int16_t>(saalTexts, code);
}
const char* SigStateToString(std::int16_t code) {
    return textOf<std::int16_t>(sigTexts, code);
}
const char* IlmiStateToString(std::int16_t code) {
    return textOf<std::int16_t>(ilmiTexts, code);
}
const char* LmacStateToString(std::int16_t code) {
    return textOf<std::int16_t>(lmacTexts, code);
}

const char* LecStateToString(std::uint32_t code, bool flag) {
    return code == lecOnPvcs && flag ? "On PVCs" : textOf<std::uint32_t>(lecTexts, code);
}
const char* LesStateToString(std::uint32_t code, bool flag) {
    return code == lesServing && flag ? "Serving" : textOf<std::uint32_t>(lesTexts, code);
}
const char* LecsStateToString(std::uint32_t code) {
    return textOf<std::uint32_t>(lecsTexts, code);
}
const char* IpStateToString(std::uint32_t code) {
    return textOf<std::uint32_t>(ipTexts, code);
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
