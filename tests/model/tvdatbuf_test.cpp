#include "model/tvdatbuf.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

atmAddress address(const char* text) {
    atmAddress value;
    value = std::string_view(text);
    return value;
}

macAddress mac(const char* text) {
    macAddress value;
    value = std::string_view(text);
    return value;
}

template <typename Buffer, typename Record> Buffer bufferOf(const Record& record) {
    Buffer buffer;
    buffer = record;
    return buffer;
}

auto all(const AtmLEC& r) {
    return std::tie(r.enabled, r.pvcOnly, r.elanName, r.mtuClass, r.l3Mtu, r.useLecs, r.elanType, r.address,
                    r.pvcs);
}
auto all(const AtmLES& r) {
    return std::tie(r.enabled, r.elanName, r.mtuClass, r.elanType, r.strictMtu, r.strictName, r.clients);
}
auto all(const AtmLECS& r) {
    return std::tie(r.enabled, r.elanType, r.etherMtuClass, r.tokenRingMtuClass, r.address);
}
auto all(const AtmIP1577& r) {
    return std::tie(r.enabled, r.pvcOnly, r.serverIp, r.subnetMask, r.ip, r.address, r.pvcs);
}
auto all(const AtmSig& r) {
    return std::tie(r.uniRevision, r.addressRegistration, r.portChangeDetect, r.registerOtherPrefixes,
                    r.address);
}

// The buffer of a record, which must give all of it back to a new record.
template <typename Buffer, typename Record> Buffer thereAndBack(const Record& record) {
    const auto buffer = bufferOf<Buffer>(record);
    Record back;
    back = buffer;
    EXPECT_EQ(all(back), all(record));
    return buffer;
}

constexpr char someAddress[] = "47ABCDEF0123456789abcdef0011223344556677";
constexpr std::int32_t beyond16Bits = 0x12340001;

}  // namespace

TEST(Records, MacIsShownInTheOrderOfItsElan) {
    AtmLEC record;
    record.mac = mac("00:a0:3e:00:00:01");
    for (const auto& [type, shown] : {std::pair(0, "00:a0:3e:00:00:01"), {1, "00:05:7c:00:00:80"}}) {
        record.elanType = type;
        EXPECT_EQ(bufferOf<LECXferBuffer>(record).macText, shown);
    }
    AtmLEC back;
    back = bufferOf<LECXferBuffer>(record);
    EXPECT_EQ(back.mac, macAddress()) << "not read back";
}

TEST(Records, ThereAndBack) {
    AtmLEC lec;
    lec.enabled = 1, lec.pvcOnly = 2, lec.mtuClass = 4, lec.l3Mtu = -7, lec.useLecs = 0, lec.elanType = 5;
    lec.elanName = "elan", lec.address = address(someAddress);
    lec.pvcs = {{.mac = mac("1:2:3:4:5:6"), .vci = 65535, .encapsulation = 1, .broadcast = 1, .rate = 155}};
    const auto lecBuffer = thereAndBack<LECXferBuffer>(lec);
    EXPECT_EQ(std::tie(lecBuffer.enabled, lecBuffer.pvcOnly, lecBuffer.mtuPosition, lecBuffer.l3Mtu,
                       lecBuffer.useLecs, lecBuffer.elanType),
              std::make_tuple(1, 2, 3, -7, 0, 5));
    EXPECT_EQ(std::tie(lecBuffer.networkPrefix, lecBuffer.esiSelector),
              std::make_tuple("47ABCDEF0123456789abcdef00", "11223344556677"));

    AtmLES les;
    les.enabled = 1, les.mtuClass = 3, les.elanType = 0, les.strictMtu = 4, les.strictName = 2;
    les.elanName = "server", les.clients = {esiSelector({1, 2, 3, 4, 5, 6, 7})};
    const auto lesBuffer = thereAndBack<LESXferBuffer>(les);
    EXPECT_EQ(std::tie(lesBuffer.enabled, lesBuffer.mtuPosition, lesBuffer.elanType, lesBuffer.strictMtu,
                       lesBuffer.strictName),
              std::make_tuple(1, 2, 0, 4, 2));

    AtmLECS lecs;
    lecs.enabled = 1, lecs.elanType = 2, lecs.etherMtuClass = 2, lecs.tokenRingMtuClass = 4;
    lecs.address = address(someAddress);
    const auto lecsBuffer = thereAndBack<LECSXferBuffer>(lecs);
    EXPECT_EQ(std::tie(lecsBuffer.enabled, lecsBuffer.elanType, lecsBuffer.etherMtuPosition,
                       lecsBuffer.tokenRingMtuPosition),
              std::make_tuple(1, 2, 1, 3));

    AtmIP1577 ip;
    ip.enabled = 1, ip.pvcOnly = 2, ip.serverIp = "10.0.0.1", ip.subnetMask = "255.0.0.0", ip.ip = "10.0.0.2";
    ip.address = address(someAddress), ip.pvcs.resize(1), ip.pvcs[0].vci = 32;
    const auto ipBuffer = thereAndBack<IP1577XferBuffer>(ip);
    EXPECT_EQ(
        std::tie(ipBuffer.enabled, ipBuffer.pvcOnly, ipBuffer.serverIp, ipBuffer.subnetMask, ipBuffer.ip),
        std::make_tuple(1, 2, "10.0.0.1", "255.0.0.0", "10.0.0.2"));

    AtmSig sig;
    sig.uniRevision = 31, sig.addressRegistration = 0, sig.portChangeDetect = 2,
    sig.registerOtherPrefixes = 3;
    sig.address.setNetworkPrefix(std::string_view(someAddress).substr(0, 26));  // the half that is used
    const auto sigBuffer = thereAndBack<SigXferBuffer>(sig);
    EXPECT_EQ(std::tie(sigBuffer.uniPosition, sigBuffer.addressRegistration, sigBuffer.portChangeDetect,
                       sigBuffer.registerOtherPrefixes),
              std::make_tuple(1, 0, 2, 3));
}

TEST(Records, UniRevision) {
    for (const auto& [revision, position, back] :
         {std::tuple(0, 0, 30), {1, 1, 31}, {30, 0, 30}, {31, 1, 31}, {29, 29, 59}}) {
        AtmSig record;
        record.uniRevision = revision;
        const auto buffer = bufferOf<SigXferBuffer>(record);
        EXPECT_EQ(buffer.uniPosition, position);
        AtmSig other;
        other = buffer;
        EXPECT_EQ(other.uniRevision, back);
    }
}

TEST(Records, ArpServerIsHereWhenTheTextsAreTheSame) {
    for (const auto& [server, own, here] :
         {std::tuple("10.0.0.1", "10.0.0.1", 1), {"10.0.0.1", "10.0.0.01", 0}, {"", "10.0.0.1", 0}}) {
        AtmIP1577 record;
        record.serverIp = server, record.ip = own;
        EXPECT_EQ(bufferOf<IP1577XferBuffer>(record).arpServerHere, here) << server;
    }
}

TEST(Records, TextsAreCutToTheirFields) {
    LECXferBuffer lec;
    lec.elanName = std::string(40, 'e');
    AtmLEC record;
    record.elanName = "a longer name than the next";
    record = lec;
    EXPECT_EQ(record.elanName.view(), std::string(31, 'e'));
    lec.elanName = "x";
    record = lec;
    EXPECT_EQ(record.elanName, ElanName("x")) << "nothing of the old name behind the new one";
    IP1577XferBuffer ip;
    ip.serverIp = std::string(20, '1');
    AtmIP1577 ipRecord;
    ipRecord = ip;
    EXPECT_EQ(ipRecord.serverIp.view(), std::string(17, '1'));
    EXPECT_EQ(FileName(std::string(300, 'f')).view().size(), 255U);
}

TEST(Records, NumbersBeyond16BitsSurviveADialogThatDoesNotChangeThem) {
    AtmLEC record;
    record.enabled = beyond16Bits, record.mtuClass = beyond16Bits, record.l3Mtu = 70000;
    auto buffer = bufferOf<LECXferBuffer>(record);
    EXPECT_EQ(std::tie(buffer.enabled, buffer.mtuPosition, buffer.l3Mtu),
              std::make_tuple(1, 0, 70000 - 65536));
    buffer.l3Mtu = -1;
    record = buffer;
    EXPECT_EQ(std::tie(record.enabled, record.mtuClass, record.l3Mtu),
              std::make_tuple(beyond16Bits, beyond16Bits, -1));
}

TEST(Buffers, SignallingAsText) {
    std::ostringstream out;
    SigXferBuffer buffer;
    buffer.uniPosition = 1, buffer.portChangeDetect = -1, buffer.networkPrefix = "47";
    out << buffer;
    EXPECT_EQ(out.str(), "1 0 -1 0 47");
}
