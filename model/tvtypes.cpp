#include "model/tvtypes.h"

#include <span>

namespace {

struct CodeText {
    std::int16_t code;
    const char* text;
};

constexpr CodeText mtuTexts[] = {{1, "1516"}, {2, "4544"}, {3, "9234"}, {4, "18190"}};

constexpr CodeText elanTexts[] = {{1, "Ethernet"}, {2, "Token Ring"}};

constexpr CodeText busTexts[] = {{0, "Idle"}, {1, "Signalling A"}, {2, "Signalling B"}, {3, "Active"}};

constexpr CodeText saalTexts[] = {{0, "SSCOP Idle"},
                                  {1, "Outgoing Connection Pending"},
                                  {2, "Incoming Connection Pending"},
                                  {3, "Outgoing disconnection pending"},
                                  {4, "Outgoing resync pending"},
                                  {5, "Incoming resync pending"},
                                  {6, "Outgoing recovery pending"},
                                  {7, "Incoming recovery pending"},
                                  {8, "Recovery response pending"},
                                  {9, "Data transfer ready"},
                                  {255, "SSCOP Not configured"}};

constexpr CodeText sigTexts[] = {
    {0, "Signalling Disconnected"}, {1, "Signalling Ready"}, {255, "Signalling Not configured"}};

constexpr CodeText ilmiTexts[] = {{0, "ILMI Disabled"},
                                  {1, "ILMI Registering"},
                                  {2, "ILMI Registered"},
                                  {3, "ILMI Static Registration"},
                                  {255, "ILMI Not configured"}};

constexpr CodeText lmacTexts[] = {
    {0, "Unused MAC entry"},         {1, "Waiting for VCC connection"}, {2, "Active"},
    {3, "Waiting for ARP response"}, {4, "Waiting for InARP response"}, {5, "Reverifying connection"}};

const char* textOf(std::span<const CodeText> table, std::int16_t code) {
    for (const CodeText& row : table)
        if (row.code == code) return row.text;
    return "XXXX";
}

constexpr int lampOff = 0, lampTransition = 1, lampUp = 2;
constexpr std::int16_t notConfigured = 255;

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
    if (code == 2 || code == 3) return lampUp;
    return code == 0 || code == notConfigured ? lampOff : lampTransition;
}

int SaalStateToColor(std::int16_t code) {
    if (code == 9) return lampUp;
    return code == notConfigured ? lampOff : lampTransition;
}

int SigStateToColor(std::int16_t code) {
    if (code == 1) return lampUp;
    return code == notConfigured ? lampOff : lampTransition;
}
