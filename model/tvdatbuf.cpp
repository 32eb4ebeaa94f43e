#include "model/tvdatbuf.h"

#include <ostream>
#include <tuple>

AtmDevices atmDevices;

std::array<LECXferBuffer, lecCount> xferBuffer, prevLecBuffer;
std::array<LESXferBuffer, lesCount> lesXferBuffer, prevLesBuffer;
LECSXferBuffer lecsXferBuffer, prevLecsBuffer;
IP1577XferBuffer ip1577XferBuffer, prevIP1577Buffer;
SigXferBuffer sigXferBuffer, prevSigBuffer;

namespace {

constexpr int firstMtuClass = 1;      // list position 0
constexpr int firstUniRevision = 30;  // list position 0

std::int16_t narrow(std::int64_t value) {
    return static_cast<std::int16_t>(value);
}

// The new value of a record field whose buffer holds `value`. If the buffer still has the low 16 bits of the
// field, the field keeps its value, so that a dialog which did not change it does not lose larger numbers.
std::int32_t widen(std::int32_t field, std::int16_t value, int offset = 0) {
    if (narrow(std::int64_t{field} - offset) == value) return field;
    return value + offset;
}

void splitAddress(const atmAddress& address, std::string& networkPrefix, std::string& esiSelector) {
    networkPrefix = address.GetNetworkPrefix();
    esiSelector = address.GetESISelector();
}

void joinAddress(atmAddress& address, const std::string& networkPrefix, const std::string& esiSelector) {
    address.setNetworkPrefix(networkPrefix);
    address.setESISelector(esiSelector);
}

auto settings(const LECXferBuffer& b) {
    return std::tie(b.pvcOnly, b.l3Mtu, b.useLecs, b.enabled, b.mtuPosition, b.elanType, b.elanName,
                    b.networkPrefix, b.esiSelector);
}

auto settings(const LESXferBuffer& b) {
    return std::tie(b.enabled, b.mtuPosition, b.strictMtu, b.strictName, b.elanType, b.elanName);
}

auto settings(const LECSXferBuffer& b) {
    return std::tie(b.etherMtuPosition, b.tokenRingMtuPosition, b.enabled, b.elanType, b.networkPrefix,
                    b.esiSelector);
}

auto settings(const IP1577XferBuffer& b) {
    return std::tie(b.enabled, b.pvcOnly, b.arpServerHere, b.networkPrefix, b.esiSelector, b.serverIp, b.ip,
                    b.subnetMask);
}

auto settings(const SigXferBuffer& b) {
    return std::tie(b.uniPosition, b.addressRegistration, b.portChangeDetect, b.registerOtherPrefixes,
                    b.networkPrefix);
}

}  // namespace

LECXferBuffer& LECXferBuffer::operator=(const AtmLEC& record) {
    elanName = record.elanName.view();
    splitAddress(record.address, networkPrefix, esiSelector);
    macAddress shown = record.mac;
    if (record.elanType != 0) shown.formSwap();
    macText = shown.GetFMacAddress();
    l3Mtu = narrow(record.l3Mtu);
    useLecs = narrow(record.useLecs);
    enabled = narrow(record.enabled);
    pvcOnly = narrow(record.pvcOnly);
    mtuPosition = narrow(std::int64_t{record.mtuClass} - firstMtuClass);
    elanType = narrow(record.elanType);
    pvcs = record.pvcs;
    return *this;
}

AtmLEC& AtmLEC::operator=(const LECXferBuffer& buffer) {
    enabled = widen(enabled, buffer.enabled);
    pvcOnly = widen(pvcOnly, buffer.pvcOnly);
    elanName = buffer.elanName;
    mtuClass = widen(mtuClass, buffer.mtuPosition, firstMtuClass);
    l3Mtu = widen(l3Mtu, buffer.l3Mtu);
    useLecs = widen(useLecs, buffer.useLecs);
    elanType = widen(elanType, buffer.elanType);
    joinAddress(address, buffer.networkPrefix, buffer.esiSelector);
    pvcs = buffer.pvcs;
    return *this;
}

LESXferBuffer& LESXferBuffer::operator=(const AtmLES& record) {
    mtuPosition = narrow(std::int64_t{record.mtuClass} - firstMtuClass);
    enabled = narrow(record.enabled);
    strictMtu = narrow(record.strictMtu);
    strictName = narrow(record.strictName);
    elanType = narrow(record.elanType);
    elanName = record.elanName.view();
    clients = record.clients;
    return *this;
}

AtmLES& AtmLES::operator=(const LESXferBuffer& buffer) {
    enabled = widen(enabled, buffer.enabled);
    elanName = buffer.elanName;
    mtuClass = widen(mtuClass, buffer.mtuPosition, firstMtuClass);
    elanType = widen(elanType, buffer.elanType);
    strictMtu = widen(strictMtu, buffer.strictMtu);
    strictName = widen(strictName, buffer.strictName);
    clients = buffer.clients;
    return *this;
}

LECSXferBuffer& LECSXferBuffer::operator=(const AtmLECS& record) {
    etherMtuPosition = narrow(std::int64_t{record.etherMtuClass} - firstMtuClass);
    tokenRingMtuPosition = narrow(std::int64_t{record.tokenRingMtuClass} - firstMtuClass);
    enabled = narrow(record.enabled);
    elanType = narrow(record.elanType);
    splitAddress(record.address, networkPrefix, esiSelector);
    return *this;
}

AtmLECS& AtmLECS::operator=(const LECSXferBuffer& buffer) {
    enabled = widen(enabled, buffer.enabled);
    elanType = widen(elanType, buffer.elanType);
    etherMtuClass = widen(etherMtuClass, buffer.etherMtuPosition, firstMtuClass);
    tokenRingMtuClass = widen(tokenRingMtuClass, buffer.tokenRingMtuPosition, firstMtuClass);
    joinAddress(address, buffer.networkPrefix, buffer.esiSelector);
    return *this;
}

IP1577XferBuffer& IP1577XferBuffer::operator=(const AtmIP1577& record) {
    enabled = narrow(record.enabled);
    pvcOnly = narrow(record.pvcOnly);
    splitAddress(record.address, networkPrefix, esiSelector);
    serverIp = record.serverIp.view();
    ip = record.ip.view();
    subnetMask = record.subnetMask.view();
    pvcs = record.pvcs;
    arpServerHere = serverIp == ip;  // the texts, not the addresses
    return *this;
}

AtmIP1577& AtmIP1577::operator=(const IP1577XferBuffer& buffer) {
    enabled = widen(enabled, buffer.enabled);
    pvcOnly = widen(pvcOnly, buffer.pvcOnly);
    serverIp = buffer.serverIp;
    subnetMask = buffer.subnetMask;
    ip = buffer.ip;
    joinAddress(address, buffer.networkPrefix, buffer.esiSelector);
    pvcs = buffer.pvcs;
    return *this;
}

SigXferBuffer& SigXferBuffer::operator=(const AtmSig& record) {
    uniPosition = narrow(record.uniRevision >= firstUniRevision ? record.uniRevision - firstUniRevision
                                                                : record.uniRevision);
    addressRegistration = narrow(record.addressRegistration);
    portChangeDetect = narrow(record.portChangeDetect);
    registerOtherPrefixes = narrow(record.registerOtherPrefixes);
    networkPrefix = record.address.GetNetworkPrefix();
    return *this;
}

AtmSig& AtmSig::operator=(const SigXferBuffer& buffer) {
    uniRevision = widen(uniRevision, buffer.uniPosition, firstUniRevision);
    addressRegistration = widen(addressRegistration, buffer.addressRegistration);
    portChangeDetect = widen(portChangeDetect, buffer.portChangeDetect);
    registerOtherPrefixes = widen(registerOtherPrefixes, buffer.registerOtherPrefixes);
    address.setNetworkPrefix(buffer.networkPrefix);
    return *this;
}

bool operator==(const LECXferBuffer& a, const LECXferBuffer& b) {
    return settings(a) == settings(b);
}
bool operator==(const LECSXferBuffer& a, const LECSXferBuffer& b) {
    return settings(a) == settings(b);
}
bool operator==(const IP1577XferBuffer& a, const IP1577XferBuffer& b) {
    return settings(a) == settings(b);
}
bool sameSettings(const LESXferBuffer& a, const LESXferBuffer& b) {
    return settings(a) == settings(b);
}
bool sameSettings(const SigXferBuffer& a, const SigXferBuffer& b) {
    return settings(a) == settings(b);
}

std::ostream& operator<<(std::ostream& out, const SigXferBuffer& buffer) {
    return out << buffer.uniPosition << ' ' << buffer.addressRegistration << ' ' << buffer.portChangeDetect
               << ' ' << buffer.registerOtherPrefixes << ' ' << buffer.networkPrefix;
}
