#include "ui/fieldmasks.h"

#include "model/addresstext.h"
#include "model/masks.h"
#include "model/ui_types.h"

#include <algorithm>
#include <array>

namespace {

// Both halves of a whole address, as the fields show them; false: it is none.
struct Halves {
    std::string prefix, esiSelector;

    explicit Halves(const AddressReading& nsap) {
        if (!nsap.reason.empty()) return;
        atmAddress address;
        address.fromHex(nsap.as<atmAddress::byteCount>());
        prefix = address.GetFNetworkPrefix();
        esiSelector = address.GetFESISelector();
    }
    explicit operator bool() const { return !prefix.empty(); }
};

zPasted pastedMac(std::string_view text) {
    const AddressReading mac = ReadAddress(AddressKind::mac, text);
    if (!mac.reason.empty()) return {.refusal = mac.reason};
    return {.text = macAddress(mac.as<6>()).GetFMacAddress()};
}

zPasted pastedEsi(std::string_view text) {
    const AddressReading whole = ReadAddress(AddressKind::esiSelector, text);
    if (whole.reason.empty()) return {.text = ::esiSelector(whole.as<7>()).GetF2EsiSelector()};
    if (const auto esi = ReadAddress(AddressKind::esi, text); esi.reason.empty())
        return {.text = macAddress(esi.as<6>()).GetFMacAddress()};
    if (const Halves halves{ReadAddress(AddressKind::nsap, text)})
        return {.text = halves.esiSelector, .partner = halves.prefix};
    return {.refusal = whole.reason};
}

zPasted pastedPrefix(std::string_view text) {
    const AddressReading prefix = ReadAddress(AddressKind::prefix, text);
    const Halves halves{ReadAddress(AddressKind::nsap, text)};
    if (halves) return {.text = halves.prefix, .partner = halves.esiSelector};
    if (!prefix.reason.empty()) return {.refusal = prefix.reason};
    AddressReading padded = prefix;
    padded.bytes.resize(atmAddress::byteCount);
    return {.text = Halves(padded).prefix};
}

zPasted pastedIp(std::string_view text) {
    const AddressReading ip = ReadAddress(AddressKind::ip, text);
    if (!ip.reason.empty()) return {.refusal = ip.reason};
    return {.text = ipAddress(ip.as<4>()).GetFIPAddress()};
}

}  // namespace

const zFieldMask macAddressField{.picture = macAddressMask,
                                 .takes = "a MAC address has the digits 0 to 9 and a to f.",
                                 .full = "A MAC address has 12 digits.",
                                 .paste = pastedMac};
const zFieldMask esiSelectorField{.picture = esiSelectorMask,
                                  .takes = "an ESI has the digits 0 to 9 and a to f.",
                                  .full = "An ESI has 12 digits, its selector 2.",
                                  .paste = pastedEsi};
const zFieldMask networkPrefixField{.picture = networkPrefixMask,
                                    .takes = "a prefix has 0 to 9 and a to f, not 0 first.",
                                    .full = "A network prefix has 26 digits.",
                                    .paste = pastedPrefix};
const zFieldMask ipAddressField{.picture = ipAddressMask,
                                .takes = "an IP address has four numbers with dots between them.",
                                .full = "Each number of an IP address has at most 3 digits.",
                                .paste = pastedIp};
const zFieldMask elanNameField{.picture = elanNameMask,
                               .takes = "use ASCII without blank # [ ] { } | ~.",
                               .full = "An ELAN name has at most 31 characters."};
const zFieldMask fourDigitsField{.picture = fourDigitsMask,
                                 .takes = "a number has only the digits 0 to 9.",
                                 .full = "This number has at most 4 digits."};
