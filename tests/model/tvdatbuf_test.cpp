#include "model/tvdatbuf.h"

namespace {

template <typename Buffer, typename Record> Buffer bufferOf(const Record& record) {
    Buffer buffer;
    buffer = record;
    return buffer;
}

constexpr std::int32_t beyond16Bits = 0x12340001;

}  // namespace

TEST(Records, MacIsShownInTheOrderOfItsElan) {
    AtmLEC record;
    record.mac = macAddress({0, 0xa0, 0x3e, 0, 0, 1});
    for (const auto& [type, shown] : {std::pair(0, "00:a0:3e:00:00:01"), {1, "00:05:7c:00:00:80"}}) {
        record.elanType = type;
        EXPECT_EQ(bufferOf<LECXferBuffer>(record).macText, shown);
    }
}

TEST(Records, UniRevision) {
    for (const auto& [revision, position, back] :
         {std::tuple(0, 0, 30), {1, 1, 31}, {30, 0, 30}, {31, 1, 31}, {29, 29, 59}}) {
        AtmSig record, other;
        record.uniRevision = revision;
        const auto buffer = bufferOf<SigXferBuffer>(record);
        EXPECT_EQ(buffer.uniPosition, position);
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
    ElanName name;
    for (const std::string& text : {std::string(40, 'e'), std::string("x")}) {
        name = text;
        EXPECT_EQ(name.view(), text.substr(0, 31));
    }
    EXPECT_EQ(name, ElanName("x")) << "nothing of the old name behind the new one";
    EXPECT_EQ(AddressText(std::string(20, '1')).view(), std::string(17, '1'));
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
