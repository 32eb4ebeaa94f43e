// Every field's offset and width: replies whose bytes tell their place, read through the views. Byte i is i
// in the first 256 bytes; from 768 on it is the complement of i, so that a field of the last page cannot pass
// for one of the first.
#include "driver/dai_io.h"
#include "tests/support/scripteddriver.h"

namespace {

ByteVector pattern(std::size_t size) {
    ByteVector bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(static_cast<std::uint8_t>(i) ^ (i >> 8) * 0x55);
    return bytes;
}

// Fields as text: numbers in hexadecimal at their full width, addresses as their bytes.
struct Show {
    std::string operator()(std::uint32_t v) const { return fmt::format("{:08x}", v); }
    std::string operator()(std::uint16_t v) const { return fmt::format("{:04x}", v); }
    std::string operator()(std::int16_t v) const { return fmt::format("{:d}", v); }
    std::string operator()(std::uint8_t v) const { return fmt::format("{:02x}", v); }
    std::string operator()(bool v) const { return v ? "yes" : "no"; }
    std::string operator()(const macAddress& v) const { return v.GetFMacAddress(); }
    std::string operator()(const esiSelector& v) const { return v.GetF2EsiSelector(); }
    std::string operator()(const ipAddress& v) const { return v.GetFIPAddress(); }
    std::string operator()(const atmAddress& v) const { return std::string(v.digits()); }
    std::string operator()(const std::string& v) const { return hexText(ByteVector(v.begin(), v.end())); }
};
template <typename... Fields> std::string fields(const Fields&... f) {
    return fmt::format("{}", fmt::join(std::vector<std::string>{Show()(f)...}, " "));
}

// A view of patterned bytes.
template <typename View, std::size_t size> View view() {
    static const ByteVector bytes = pattern(size);
    return View(bytes);
}

}  // namespace

TEST(Views, Adapter) {
    const auto board = view<BoardStateView, 6>();
    EXPECT_EQ(fields(board.count(), board.mask()), "0100 0302");
    EXPECT_EQ(fields(view<BoardMacView, 7>().address()), "01:02:03:04:05:06");
    const auto aal = view<AalStatsView, 92>();
    EXPECT_EQ(fields(aal.txCells(), aal.rxCells(), aal.txPackets(), aal.rxPackets()),
              "03020100 07060504 0b0a0908 0f0e0d0c");
    EXPECT_EQ(fields(aal.rxCellErrors(), aal.rxFrameErrors(), aal.rxDropped()), "84807c78 c4c0bcb8 9a989694");
    EXPECT_EQ(fields(aal.invalidVcis(), aal.invalidVpis(), aal.txDropped()), "4b4a4948 4f4e4d4c 5b5a5958");
    const auto suni = view<SuniStatsView, 92>();
    EXPECT_EQ(fields(suni.linkKind(), suni.valid(), suni.linkAlarm(), suni.outOfFrame(), suni.lossOfFrame(),
                     suni.lossOfSignal(), suni.farEndFailure(), suni.alarmIndication(), suni.lossOfPointer()),
              "03020100 07060504 0b0a0908 0f0e0d0c 13121110 17161514 23222120 27262524 33323130");
}

TEST(Views, SignallingAndCircuits) {
    const auto link = view<LinkStateView, 60>();
    EXPECT_EQ(fields(link.ilmi(), link.saal(), link.signalling(), link.address()),
              "2 3 4 090a0b0c0d0e0f101112131415161718191a1b1c");
    const auto vc = view<VcRowView, 20>();
    EXPECT_EQ(fields(vc.vci(), vc.tx(), vc.rx()), "0100 0f0e0d0c 13121110");
}

TEST(Views, LanEmulationClient) {
    const auto state = view<LecStateView, 16>();
    EXPECT_EQ(fields(state.state(), state.flag()), "03020100 0f0e0d0c");
    const auto stats = view<LecStatsView, 940>();
    EXPECT_EQ(fields(stats.address(), stats.elanType(), stats.mtuClass(), stats.mac()),
              "000102030405060708090a0b0c0d0e0f10111213 20 21 3d:3e:3f:40:41:42");
    EXPECT_EQ(fields(stats.elanName()), "1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29 2a 2b "
                                        "2c 2d 2e 2f 30 31 32 33 34 35 36 37 38 39 3a 3b");
    const auto connection = [&](LecConnection c) { return fields(stats.vci(c), stats.address(c)); };
    EXPECT_EQ(connection(LecConnection::controlDirect), "cacb 4c4d4e4f505152535455565758595a5b5c5d5e5f");
    EXPECT_EQ(connection(LecConnection::controlDistribute), "c8c9 dfdedddcdbdad9d8d7d6d5d4d3d2d1d0cfcecdcc");
    EXPECT_EQ(connection(LecConnection::multicastSend), "9e9f c7c6c5c4c3c2c1c0bfbebdbcbbbab9b8b7b6b5b4");
    EXPECT_EQ(connection(LecConnection::multicastForward), "9c9d b3b2b1b0afaeadacabaaa9a8a7a6a5a4a3a2a1a0");
    const auto row = view<LecRowView, 72>();
    EXPECT_EQ(fields(row.mac(), row.switched(), row.address(), row.vci(), row.tx(), row.rx()),
              "00:01:02:03:04:05 no 0f101112131415161718191a1b1c1d1e1f202122 2726 33323130 37363534");
}

TEST(Views, LanEmulationServers) {
    const auto state = view<LesStateView, 12>();
    EXPECT_EQ(fields(state.state(), state.flag()), "03020100 0b0a0908");
    const auto stats = view<LesStatsView, 116>();
    EXPECT_EQ(fields(stats.address(), stats.elanType(), stats.mtuClass(), stats.busAddress()),
              "000102030405060708090a0b0c0d0e0f10111213 20 21 202122232425262728292a2b2c2d2e2f30313233");
    EXPECT_EQ(fields(stats.elanName()), "50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f "
                                        "60 61 62 63 64 65 66 67 68 69 6a 6b 6c 6d 6e 6f");
    const auto row = view<LesRowView, 64>();
    EXPECT_EQ(fields(row.mac(), row.address(), row.state()),
              "02:03:04:05:06:07 08090a0b0c0d0e0f101112131415161718191a1b 9508");
    EXPECT_EQ(fields(row.controlVci(), row.controlTx(), row.controlRx()), "2928 2f2e2d2c 33323130");
    EXPECT_EQ(fields(row.multicastVci(), row.multicastTx(), row.multicastRx()), "3534 3b3a3938 3f3e3d3c");

    EXPECT_EQ(fields(view<LecsStateView, 8>().state()), "03020100");
    const auto lecs = view<LecsStatsView, 48>();
    EXPECT_EQ(fields(lecs.address(), lecs.elanType(), lecs.etherMtuClass(), lecs.tokenRingMtuClass()),
              "000102030405060708090a0b0c0d0e0f10111213 20 21 22");
    EXPECT_EQ(fields(lecs.registered(), lecs.validRequests(), lecs.invalidRequests(), lecs.rejected(),
                     lecs.connectionsMade(), lecs.connectionsOpen()),
              "yes 1f1e1d1c 23222120 27262524 2b2a2928 2f2e2d2c");
    const auto client = view<LecsRowView, 9>();
    EXPECT_EQ(fields(client.client(), client.les(), client.kind()), "00:01:02:03:04:05-06 07 08");
}

TEST(Views, ClassicalIp) {
    EXPECT_EQ(fields(view<IpStateView, 16>().state()), "03020100");
    const auto stats = view<IpStatsView, 160>();
    EXPECT_EQ(fields(stats.txPackets(), stats.txDropped(), stats.rxPackets(), stats.rxDropped()),
              "6a686664 e1dedbd8 2a272420 c6bdb4a8");
    const auto row = view<IpRowView, 56>();
    EXPECT_EQ(fields(row.state(), row.switched(), row.vci(), row.tx(), row.rx(), row.ip(), row.address()),
              "256 no 3340 17161514 1b1a1918 30.31.32.33 22232425262728292a2b2c2d2e2f303132333435");
}

// Each byte of a flag or a kind counts, and nothing beside it.
TEST(Views, SingleBytesOfFlagsAndKinds) {
    for (std::size_t at = 0; at < 72; ++at) {
        ByteVector bytes(72);
        bytes[4] = bytes[8] = 1;
        bytes[at] ^= 1;
        EXPECT_EQ(LecsStatsView(bytes).registered(), at >= 24 && at <= 27) << at;
        EXPECT_EQ(LecRowView(bytes).switched(), at != 8 && at != 9) << at;
        EXPECT_EQ(IpRowView(bytes).switched(), at < 4 || at > 7) << at;
    }
    ByteVector negative(64);
    negative[37] = 0xff;
    EXPECT_EQ(LesRowView(negative).state(), -256);
}

TEST(Views, TextsEndWithTheirFieldOrAtANul) {
    const ByteVector full(32, 'x');
    EXPECT_EQ(PackageRevView(full).text(), std::string(32, 'x'));
    ByteVector cut = full;
    cut[3] = 0;
    EXPECT_EQ(PackageRevView(cut).text(), "xxx");
    EXPECT_EQ(PackageRevView(std::span(full).first(2)).text(), "xx");
    ByteVector stats(940, 'e');
    EXPECT_EQ(LecStatsView(stats).elanName().size(), 32U);
    EXPECT_EQ(LesStatsView(std::span(stats).first(100)).elanName().size(), 20U);
}

TEST(Views, FalseViewsReadAsZeros) {
    EXPECT_EQ(IpStatsView().rxDropped(), 0U);
    EXPECT_EQ(BoardMacView().address(), macAddress());
    EXPECT_EQ(PackageRevView().text(), "");
}
