// Every reply of the simulator, byte by byte, from literal request bytes.
#include "running.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace {

// The second LEC, LES of the first adapter: Link 0, Unit 1.
constexpr char lecStateQuery[] = "1400 0100 00 01 2000 1000 0100 0000 adde";

struct Layout {
    const char* place;    // as the simulator's commands name it
    const char* request;  // header bytes
    std::size_t base;     // of the reply or of the row within the data
    std::size_t bytes;    // data bytes of the whole reply
    const char* fields;   // name@offset+width and n(umber), h(ex), i(p) or t(ext)
};

const Layout layouts[] = {
    {"driver", "8100 0100 00 00 1600 1000 0100 0000 adde", 0, 6, "boards@0+2n mask@2+2n"},
    {"driver", "8100 0500 00 00 3000 1000 0100 0000 adde", 0, 32, "revision@0+32t"},
    {"adapter 1", "8100 0300 00 00 6c00 1000 0100 0000 adde", 0, 92,
     "txCells@0+4n rxCells@4+4n txPackets@8+4n rxPackets@12+4n rxCellErrors1@24+4n rxCellErrors2@28+4n "
     "rxCellErrors3@32+4n rxCellErrors4@36+4n rxFrameErrors1@40+4n rxFrameErrors2@44+4n rxFrameErrors3@48+4n "
     "rxFrameErrors4@52+4n rxDrops1@68+4n invalidVcis@72+4n invalidVpis@76+4n rxDrops2@80+4n txDrops@88+4n"},
    {"adapter 1", "8100 0400 00 00 6c00 1000 0100 0000 adde", 0, 92,
     "link@0+4n valid@4+4n linkAlarm@8+4n oof@12+4n lof@16+4n los@20+4n ferf@32+4n ais@36+4n lop@48+4n"},
    {"lec 1.2", lecStateQuery, 0, 16, "state@0+4n works@12+4n"},
    {"lec 1.2", "1400 0200 00 01 bc03 1000 0100 0000 adde", 0, 940,
     "address@0+20h elanType@20+1n mtu@21+1n elanName@28+33t mac@61+6h controlDirect@76+20h "
     "controlDistribute@800+20h controlDirectVci@820+2n controlDistributeVci@822+2n multicastSend@824+20h "
     "multicastForward@844+20h multicastSendVci@864+2n multicastForwardVci@866+2n"},
    {"lec 1.2 row 2", "1400 0400 00 01 a000 1000 0100 0200 adde", 72, 144,
     "mac@0+6h kind@8+2n address@15+20h vci@38+2n txPackets@48+4n rxPackets@52+4n"},
    {"les 1.2", "1500 0100 00 01 1c00 1000 0100 0000 adde", 0, 12, "state@0+4n serves@8+4n"},
    {"les 1.2", "1500 0200 00 01 8400 1000 0100 0000 adde", 0, 116,
     "address@0+20h elanType@20+1n mtu@21+1n bus@32+20h elanName@80+33t"},
    {"les 1.2 row 2", "1500 0400 00 01 9000 1000 0100 0200 adde", 64, 128,
     "mac@2+6h address@8+20h state@36+2n controlVci@40+2n controlTx@44+4n controlRx@48+4n multicastVci@52+2n "
     "multicastTx@56+4n multicastRx@60+4n"},
    {"lecs 1", "1600 0100 00 00 1800 1000 0100 0000 adde", 0, 8, "state@0+4n"},
    {"lecs 1", "1600 0200 00 00 4000 1000 0100 0000 adde", 0, 48,
     "address@0+20h elanType@20+1n etherMtu@21+1n tokenRingMtu@22+1n registered@24+4n validRequests@28+4n "
     "invalidRequests@32+4n rejected@36+4n made@40+4n open@44+4n"},
    {"lecs 1 row 2", "1600 0400 00 00 2200 1000 0100 0200 adde", 9, 18, "client@0+7h les@7+1n kind@8+1n"},
    {"sig 1", "2100 0100 00 00 4c00 1000 0100 0000 adde", 0, 60,
     "ilmi@2+1n saal@3+1n signalling@4+1n address@9+20h"},
    {"vc 1 row 2", "0100 0400 00 00 3800 1000 0100 0200 adde", 20, 40,
     "vci@0+2n txPackets@12+4n rxPackets@16+4n"},
    {"ip 1", "4200 0100 00 00 2000 1000 0100 0000 adde", 0, 16, "state@0+4n"},
    {"ip 1", "4200 0200 00 00 b000 1000 0100 0000 adde", 0, 160,
     "tx1@48+4n tx2@52+4n txDrop1@68+4n txDrop2@72+4n txDrop3@76+4n rx1@80+4n rx2@84+4n rxDrop1@88+4n "
     "rxDrop2@92+4n "
     "rxDrop3@96+4n rxDrop4@100+4n rxDrop5@104+4n rxDrop6@108+4n rxDrop7@112+4n rxDrop8@116+4n "
     "rxDrop9@120+4n rx3@124+4n"},
    {"ip 1 row 2", "4200 0400 00 00 8000 1000 0100 0200 adde", 56, 112,
     "state@0+2n kind@4+4n vci@12+2n txPackets@20+4n rxPackets@24+4n ip@30+4i address@34+20h"},
    {"ip.pvc 1 row 2", "4200 0600 00 00 3000 1000 0100 0200 adde", 16, 32, "ip@0+4i vci@4+2n encap@6+1n"},
};

}  // namespace

// Each field is forced to a pattern of its own: it must come at its place, and nothing else may change.
TEST(SimReplies, EveryFieldStandsAtItsPlace) {
    Running sim;
    sim.ctl("clock step 60");
    RawClient client(sim.node());
    for (const Layout& layout : layouts) {
        std::istringstream fields(layout.fields);
        for (std::string field; fields >> field;) {
            SCOPED_TRACE(fmt::format("{} {}", layout.place, field));
            const std::size_t at = field.find('@'), plus = field.find('+');
            const std::size_t offset = std::stoul(field.substr(at + 1)),
                              width = std::stoul(field.substr(plus + 1));
            const char kind = field.back();
            RawBytes pattern(width);
            for (std::size_t i = 0; i < width; ++i)
                pattern[i] = static_cast<std::uint8_t>(offset + 11 * i + 161);
            std::string value;
            if (kind == 'n')
                value = std::to_string(little(pattern, 0, width));
            else if (kind == 'h')
                value = fmt::format("{:02x}", fmt::join(pattern, ""));
            else if (kind == 'i')
                value = fmt::format("{}", fmt::join(pattern, "."));
            else {
                value = "Text";
                pattern = hex("54657874");
                pattern.resize(width);
            }
            for (const char* table : {"lec 1.2", "les 1.2", "lecs 1", "ip 1", "ip.pvc 1"})
                sim.ctl(fmt::format("rows {} 2", table));
            const auto before = client.call(layout.request);
            ASSERT_EQ(before.resp(), 0);
            ASSERT_EQ(before.message.size(), 16 + layout.bytes);
            sim.ctl(fmt::format("set {} {} {}", layout.place, field.substr(0, at), value));
            const auto after = client.call(layout.request);
            if (field.starts_with("state@") && layout.base == 0) {  // other fields may follow from a state
                EXPECT_EQ(slice(after.message, 16 + offset, width), pattern);
                sim.ctl("unset");
                continue;
            }
            RawBytes expected = before.message;
            std::copy(pattern.begin(), pattern.end(),
                      expected.begin() + static_cast<std::ptrdiff_t>(16 + layout.base + offset));
            EXPECT_EQ(after.message, expected);
            sim.ctl("unset");
        }
    }
}

TEST(SimReplies, BoardMacOfEachAdapter) {
    Running sim({"--frozen", "--adapters", "1,3"});
    RawClient client(sim.node());
    EXPECT_EQ(slice(client.call("8100 0100 00 00 1600 1000 0100 0000 adde").message, 16, 4),
              hex("0200 0500"));
    const struct {
        const char* board;
        const char* reply;  // the board number stays in front
        int resp;
    } cases[] = {{"01", "01 00a03e000001", 0},
                 {"03", "03 00a03e000021", 0},
                 {"02", "", 3},
                 {"00", "", 3},
                 {"ff", "", 3}};
    for (const auto& c : cases) {
        const auto reply = client.call(
            hex(fmt::format("8100 0200 00 00 1700 1000 0100 0000 adde {} 000000000000", c.board)));
        EXPECT_EQ(reply.resp(), c.resp) << c.board;
        if (c.resp == 0)
            EXPECT_EQ(slice(reply.message, 16, 7), hex(c.reply));
        else
            EXPECT_EQ(reply.message.size(), 16u);
    }
    // The revision is the driver's, whatever Link says; an adapter that is not there has no state.
    EXPECT_EQ(client.call("8100 0500 01 00 3000 1000 0100 0000 adde").resp(), 0);
    EXPECT_EQ(client.call("1400 0100 01 00 2000 1000 0100 0000 adde").resp(), 3);
    EXPECT_EQ(client.call("1400 0100 02 00 2000 1000 0100 0000 adde").resp(), 0);
}

TEST(SimReplies, WhatTheConfigurationSays) {
    Running sim;
    sim.ctl("clock step 60");
    RawClient client(sim.node());
    const auto lec = client.call("1400 0200 00 01 bc03 1000 0100 0000 adde");
    EXPECT_EQ(slice(lec.message, 16, 22), hex("470999000000000000a03e0101 00a03e000002 00 02 02"));
    EXPECT_EQ(slice(lec.message, 16 + 28, 11), hex("6163636f756e74696e6700"));  // "accounting"
    EXPECT_EQ(slice(lec.message, 16 + 76, 20), hex("470999000000000000a03e0101 00a03e000001 11"));  // LES 2
    const auto les = client.call("1500 0200 00 01 8400 1000 0100 0000 adde");
    EXPECT_EQ(slice(les.message, 16, 22), hex("470999000000000000a03e0101 00a03e000001 11 02 02"));
    const auto lecs = client.call("1600 0200 00 00 4000 1000 0100 0000 adde");
    EXPECT_EQ(slice(lecs.message, 16, 23), hex("47007900000000000000000000 00a03e000001 00 01 01 02"));

    // The circuits of the LES/BUS connections and of the PVCs are in the VC table, 5 and 16 at its head.
    const auto vcs = client.call("0100 0400 00 03 f803 1000 0100 3200 adde");
    std::set<std::uint64_t> vcis;
    for (int row = 0; row < vcs.nRow(); ++row) vcis.insert(vcs.number(std::size_t(row) * 20, 2));
    EXPECT_EQ(slice(vcs.message, 16, 2), hex("0500"));
    EXPECT_EQ(slice(vcs.message, 36, 2), hex("1000"));
    EXPECT_EQ(vcis.size(), static_cast<std::size_t>(vcs.nRow()));
    for (const std::size_t offset : {820u, 822u, 864u, 866u})
        EXPECT_TRUE(vcis.contains(lec.number(offset, 2)));
    for (const unsigned pvc : {100u, 101u, 120u}) EXPECT_TRUE(vcis.contains(pvc)) << pvc;

    // LEC 1 of adapter 1 shows its two PVCs first, of a kind that is not 1.
    const auto table = client.call("1400 0400 00 00 a000 1000 0100 0200 adde");
    EXPECT_EQ(slice(table.message, 16, 6), hex("00204000a101"));
    EXPECT_NE(table.number(8, 2), 1u);
    EXPECT_EQ(table.number(38, 2), 100u);
    // The mappings of the client files, then clients that asked.
    const auto mappings = client.call("1600 0400 00 00 7300 1000 0100 0b00 adde");
    EXPECT_EQ(slice(mappings.message, 16, 8), hex("00a03e000001 00 00"));
    EXPECT_NE(mappings.number(8, 1), 2u);
    EXPECT_EQ(mappings.number(std::size_t(mappings.nRow() - 1) * 9 + 8, 1), 2u);
}

// That whole tables come in chunks is shown by what the windows show of them.
TEST(SimReplies, ATableEndsWhereItEndsAndWhatDoesNotFitIsNotDelivered) {
    Running sim;
    RawClient client(sim.node());
    sim.ctl("rows lec 1.1 14");
    const auto last = client.call("1400 0400 00 00 b803 1000 0e00 0d00 adde");
    EXPECT_EQ(last.nRow(), 1);
    EXPECT_EQ(last.rowM(), 15);
    EXPECT_EQ(client.call("1400 0400 00 00 b803 1000 0f00 0d00 adde").nRow(), 0);
    EXPECT_EQ(client.call("1400 0400 00 00 9f00 1000 0100 0d00 adde").nRow(), 1);
}

TEST(SimReplies, WrongRequestsAreRefused) {
    Running sim({"--frozen", "--adapters", "1-2"});
    RawClient client(sim.node());
    const struct {
        const char* header;
        int error, resp;
    } cases[] = {
        {"6300 0100 00 00 2000 1000 0100 0000 adde", 0, 1},  // no such service
        {"1400 0700 00 00 2000 1000 0100 0000 adde", 0, 2},  // no such query
        {"1400 0100 02 00 2000 1000 0100 0000 adde", 0, 3},  // adapter 3
        {"1400 0100 ff 00 2000 1000 0100 0000 adde", 0, 3},
        {"1400 0100 00 04 2000 1000 0100 0000 adde", 0, 4},  // LEC 5
        {"1500 0100 00 08 1c00 1000 0100 0000 adde", 0, 4},  // LES 9
        {"1400 0100 00 00 1f00 1000 0100 0000 adde", 0, 5},  // a byte short
        {"1400 0100 00 00 2100 1000 0100 0000 adde", 0, 5},  // a byte long
        {"1400 0100 00 00 2000 2100 0100 0000 adde", 0, 5},  // more input than message
        {"1400 0100 00 00 2000 0f00 0100 0000 adde", 0, 5},  // less input than a header
        {"1400 0400 00 00 5700 1000 0100 0100 adde", 0, 5},  // no room for one row
        {"1400 0400 00 00 b803 1000 0000 0100 adde", 0, 6},  // row 0
    };
    for (const auto& c : cases) {
        const auto reply = client.call(c.header);
        EXPECT_EQ(reply.error, c.error) << c.header;
        EXPECT_EQ(reply.resp(), c.resp) << c.header;
        EXPECT_EQ(reply.message.size(), 16u) << c.header;
    }
    // A message whose length is not its Size, and one without a whole header, are no messages.
    RawBytes lie = hex(lecStateQuery);
    lie.resize(31);
    EXPECT_EQ(client.call(lie).error, EINVAL);
    EXPECT_EQ(client.call(hex("1400 0100")).error, EINVAL);
    // Neither is anything before the device was opened, or under another command code.
    RawClient early(sim.node(), std::nullopt);
    EXPECT_EQ(early.call(lecStateQuery).error, EINVAL);
    RawBytes other = ints({2, ++client.id, 0x4c01, 0, 32});
    const RawBytes query = hex(lecStateQuery);
    other.insert(other.end(), query.begin(), query.end());
    other.resize(20 + 32);
    client.send(other);
    EXPECT_EQ(little(client.receive().value(), 4, 4), static_cast<std::uint64_t>(EINVAL));
}

TEST(SimReplies, ServicesComeUpStepByStep) {
    Running sim;
    RawClient client(sim.node());
    const struct {
        const char *name, *request;
        std::size_t offset, width;
        std::vector<std::uint64_t> bySecond;
    } cases[] = {
        {"LEC 1", "1400 0100 00 00 2000 1000 0100 0000 adde", 0, 4, {1, 2, 3, 4, 5, 6, 6}},
        {"disabled LEC 4", "1400 0100 00 03 2000 1000 0100 0000 adde", 0, 4, {0, 0, 0, 0, 0, 0, 0}},
        {"LEC on PVCs only", "1400 0100 01 01 2000 1000 0100 0000 adde", 0, 4, {1, 1, 1, 1, 1, 1, 1}},
        {"and its flag", "1400 0100 01 01 2000 1000 0100 0000 adde", 12, 4, {1, 1, 1, 1, 1, 1, 1}},
        {"LES 1", "1500 0100 00 00 1c00 1000 0100 0000 adde", 0, 4, {1, 1, 1, 1, 1, 1, 1}},
        {"and its flag", "1500 0100 00 00 1c00 1000 0100 0000 adde", 8, 4, {0, 0, 1, 1, 1, 1, 1}},
        {"LECS", "1600 0100 00 00 1800 1000 0100 0000 adde", 0, 4, {1, 2, 3, 4, 4, 4, 4}},
        {"its registration", "1600 0200 00 00 4000 1000 0100 0000 adde", 24, 4, {0, 0, 0, 1, 1, 1, 1}},
        {"Classical IP", "4200 0100 00 00 2000 1000 0100 0000 adde", 0, 4, {1, 2, 3, 4, 5, 5, 5}},
        {"disabled Classical IP", "4200 0100 03 00 2000 1000 0100 0000 adde", 0, 4, {0, 0, 0, 0, 0, 0, 0}},
        {"SSCOP", "2100 0100 00 00 4c00 1000 0100 0000 adde", 3, 1, {1, 9, 9, 9, 9, 9, 9}},
        {"signalling", "2100 0100 00 00 4c00 1000 0100 0000 adde", 4, 1, {0, 0, 1, 1, 1, 1, 1}},
        {"ILMI", "2100 0100 00 00 4c00 1000 0100 0000 adde", 2, 1, {1, 1, 2, 2, 2, 2, 2}},
        {"ILMI without registration",
         "2100 0100 02 00 4c00 1000 0100 0000 adde",
         2,
         1,
         {3, 3, 3, 3, 3, 3, 3}},
    };
    for (std::size_t second = 0; second < cases[0].bySecond.size(); ++second) {
        for (const auto& c : cases)
            EXPECT_EQ(client.call(c.request).number(c.offset, c.width), c.bySecond[second])
                << c.name << " at " << second;
        sim.ctl("clock step 1");
    }
    sim.ctl("set lec 1.1 state 3");  // forced, and what follows from it
    EXPECT_EQ(client.call("1400 0100 00 00 2000 1000 0100 0000 adde").number(0, 4), 3u);
    EXPECT_EQ(client.call("1400 0200 00 00 bc03 1000 0100 0000 adde").number(820, 2), 0u);
    sim.ctl("unset");
    EXPECT_EQ(client.call("1400 0100 00 00 2000 1000 0100 0000 adde").number(0, 4), 6u);
}

TEST(SimReplies, CountersFollowTheSimulatedClockAndTheSeed) {
    constexpr char aal[] = "8100 0300 00 00 6c00 1000 0100 0000 adde";
    std::vector<RawBytes> atOneHour;
    for (const char* seed : {"7", "7", "8"}) {
        Running sim({"--frozen", "--seed", seed});
        RawClient client(sim.node());
        RawBytes last = client.call(aal).message;
        EXPECT_EQ(client.call(aal).message, last);
        for (const char* step : {"0.25", "0.25", "5", "5", "10", "10", "3569.5"}) {
            sim.ctl(std::string("clock step ") + step);
            const RawBytes now = client.call(aal).message;
            for (const std::size_t offset : {0u, 4u, 8u, 12u, 24u, 40u, 68u, 88u})
                EXPECT_GE(little(now, 16 + offset, 4), little(last, 16 + offset, 4)) << step;
            last = now;
        }
        EXPECT_GT(little(last, 16, 4), 0u);
        atOneHour.push_back(last);
        if (atOneHour.size() == 1) {
            sim.ctl("clock run");
            const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (client.call(aal).message == last && std::chrono::steady_clock::now() < until)
                ::usleep(10000);
            EXPECT_NE(client.call(aal).message, last);
        }
    }
    EXPECT_EQ(atOneHour[0], atOneHour[1]);
    EXPECT_NE(atOneHour[0], atOneHour[2]);
}
