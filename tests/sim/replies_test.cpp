// Replies of the simulator to literal request bytes. That each field stands at its place is shown by the
// windows' tests, which read what the simulator's commands have set.
#include "running.h"

constexpr char lecStateQuery[] = "1400 0100 00 01 2000 1000 0100 0000 adde";  // Link 0, Unit 1: LEC 1.2

TEST(SimReplies, WhatTheConfigurationSays) {
    Running sim({"--frozen", "--adapters", "1,3"});
    sim.ctl("clock step 60");
    RawClient client(sim.node());
    const auto data = [&](const char* header, std::size_t offset, std::size_t width) {
        return slice(client.call(header).message, 16 + offset, width);
    };
    EXPECT_EQ(data("8100 0100 00 00 1600 1000 0100 0000 adde", 0, 4), hex("0200 0500"));
    EXPECT_EQ(data("8100 0200 00 00 1700 1000 0100 0000 adde 03", 0, 7), hex("03 00a03e000021"));
    EXPECT_EQ(data("1400 0200 00 01 bc03 1000 0100 0000 adde", 0, 22),
              hex("470999000000000000a03e0101 00a03e000002 00 02 02"));
    EXPECT_EQ(data("1400 0200 00 01 bc03 1000 0100 0000 adde", 76, 20),  // the LES that serves the client
              hex("470999000000000000a03e0101 00a03e000001 11"));
    EXPECT_EQ(data("1600 0200 00 00 4000 1000 0100 0000 adde", 0, 23),
              hex("47007900000000000000000000 00a03e000001 00 01 01 02"));

    // The circuits of the LES/BUS connections and of the PVCs are in the VC table, 5 and 16 at its head.
    const auto lec = client.call("1400 0200 00 01 bc03 1000 0100 0000 adde");
    const auto vcs = client.call("0100 0400 00 03 f803 1000 0100 3200 adde");
    std::set<std::uint64_t> vcis;
    for (int row = 0; row < vcs.nRow(); ++row) vcis.insert(vcs.number(std::size_t(row) * 20, 2));
    EXPECT_EQ(vcs.number(0, 2), 5u);
    EXPECT_EQ(vcs.number(20, 2), 16u);
    EXPECT_EQ(vcis.size(), static_cast<std::size_t>(vcs.nRow()));
    for (const std::size_t offset : {820u, 822u, 864u, 866u})
        EXPECT_TRUE(vcis.contains(lec.number(offset, 2)));
    for (const unsigned pvc : {100u, 101u, 120u}) EXPECT_TRUE(vcis.contains(pvc)) << pvc;
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
        int resp;
    } cases[] = {
        {"6300 0100 00 00 2000 1000 0100 0000 adde", 1},  // no such service
        {"1400 0700 00 00 2000 1000 0100 0000 adde", 2},  // no such query
        {"1400 0100 02 00 2000 1000 0100 0000 adde", 3},  // adapter 3
        {"1400 0100 00 04 2000 1000 0100 0000 adde", 4},  // LEC 5
        {"1400 0100 00 00 1f00 1000 0100 0000 adde", 5},  // a byte short
        {"1400 0100 00 00 2100 1000 0100 0000 adde", 5},  // a byte long
        {"1400 0100 00 00 2000 2100 0100 0000 adde", 5},  // more input than message
        {"1400 0100 00 00 2000 0f00 0100 0000 adde", 5},  // less input than a header
        {"1400 0400 00 00 5700 1000 0100 0100 adde", 5},  // no room for one row
        {"1400 0400 00 00 b803 1000 0000 0100 adde", 6},  // row 0
        {"8100 0200 00 00 1700 1000 0100 0000 adde 03", 3},
        {"8100 0200 00 00 1700 1000 0100 0000 adde 00", 3},
        {"8100 0200 00 00 1700 1000 0100 0000 adde ff", 3},
    };
    for (const auto& c : cases) {
        const auto reply = client.call(c.header);
        EXPECT_EQ(reply.resp(), c.resp) << c.header;
        EXPECT_EQ(reply.message.size(), 16u) << c.header;
    }
    EXPECT_EQ(client.call("8100 0500 02 00 3000 1000 0100 0000 adde").resp(), 0);  // is the driver's
    // A message whose length is not its Size, and one without a whole header, are no messages.
    RawBytes lie = hex(lecStateQuery);
    lie.resize(31);
    EXPECT_EQ(client.call(lie).error, EINVAL);
    EXPECT_EQ(client.call(hex("1400 0100")).error, EINVAL);
    // Neither is anything before the device was opened, or under another command code.
    RawClient early(sim.node(), std::nullopt);
    EXPECT_EQ(early.call(lecStateQuery).error, EINVAL);
    RawBytes other = packet({2, ++client.id, 0x4c01, 0, 32}, hex(lecStateQuery));
    other.resize(20 + 32);
    client.send(other);
    EXPECT_EQ(little(client.receive().value(), 4, 4), static_cast<std::uint64_t>(EINVAL));
}

TEST(SimReplies, ServicesComeUpStepByStep) {
    Running sim;
    // LEC 2.2 runs on PVCs only, and Classical IP is off on adapter 4.
    const char* const fields[] = {"lec 1.1 state",  "lecs 1 state",     "ip 1 state",
                                  "les 1.1 serves", "sig 1 signalling", "sig 1 ilmi",
                                  "lec 2.2 state",  "lec 2.2 works",    "ip 4 state"};
    for (const char* second :
         {"1 1 1 0 0 1 1 1 0 ", "2 2 2 0 0 1 1 1 0 ", "3 3 3 1 1 2 1 1 0 ", "4 4 4 1 1 2 1 1 0 ",
          "5 4 5 1 1 2 1 1 0 ", "6 4 5 1 1 2 1 1 0 ", "6 4 5 1 1 2 1 1 0 "}) {
        std::string found;
        for (const char* field : fields) found += sim.ctl(std::string("get ") + field) + ' ';
        EXPECT_EQ(found, second);
        sim.ctl("clock step 1");
    }
}

TEST(SimReplies, CountersFollowTheSimulatedClockAndTheSeed) {
    std::vector<std::string> atOneHour;
    for (const char* seed : {"7", "7", "8"}) {
        Running sim({"--frozen", "--seed", seed});
        RawClient client(sim.node());
        const auto counters = [&] { return client.call("8100 0300 00 00 6c00 1000 0100 0000 adde"); };
        auto last = counters();
        EXPECT_EQ(counters().message, last.message);
        for (const char* step : {"0.25", "0.25", "10", "3589.5"}) {
            sim.ctl(std::string("clock step ") + step);
            const auto now = counters();
            for (const std::size_t offset : {0u, 4u, 8u, 12u, 24u, 40u, 68u, 88u})
                EXPECT_GE(now.number(offset, 4), last.number(offset, 4)) << step;
            last = now;
        }
        EXPECT_GT(last.number(0, 4), 0u);
        atOneHour.push_back(sim.ctl("dump"));
        sim.ctl("clock run");
        for (int i = 0; i < 2000 && counters().message == last.message; ++i) ::usleep(10000);
        EXPECT_NE(counters().message, last.message);
    }
    EXPECT_EQ(atOneHour[0], atOneHour[1]);
    EXPECT_NE(atOneHour[0], atOneHour[2]);
}
