// The life of the simulator, and the commands that it takes.
#include "rawclient.h"
#include "tests/support/simulator.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

bool nodesStand(const TempRoot& root) {
    return root.exists("/dev/li") || root.exists("/dev/li.ctl");
}

}  // namespace

TEST(SimLife, NodesComeAndGoWithIt) {
    TempRoot root;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, 0}) {
        Simulator simulator;
        EXPECT_TRUE(root.exists("/dev/li"));
        EXPECT_TRUE(root.exists("/dev/li.ctl"));
        if (signal)
            ::kill(simulator.pid(), signal);
        else
            simulator.ctl("quit");
        EXPECT_EQ(simulator.wait(), 0) << signal;
        EXPECT_FALSE(nodesStand(root)) << signal;
    }
}

TEST(SimLife, OnlyOneLivesOnANodeAndAStaleNodeIsReplaced) {
    TempRoot root;
    {
        Simulator first;
        const Finished second = runSimulator("");
        EXPECT_EQ(second.status, 1);
        EXPECT_NE(second.err.find("already answers"), std::string::npos) << second.err;
        EXPECT_EQ(RawClient(root.at("/dev/li").string()).openError, 0);  // the first is unharmed
        ::kill(first.pid(), SIGKILL);
        first.wait();
    }
    EXPECT_TRUE(nodesStand(root));
    {
        Simulator third;
        EXPECT_EQ(RawClient(root.at("/dev/li").string()).openError, 0);
    }
    EXPECT_FALSE(nodesStand(root));
    root.write("/dev/li", "a file");
    EXPECT_EQ(runSimulator("").status, 1);
    EXPECT_EQ(root.read("/dev/li"), "a file");
}

TEST(SimCommands, RefusalsSayWhy) {
    TempRoot root;
    EXPECT_EQ(runSimulator("ctl show").status, 1);  // nobody there
    EXPECT_EQ(runSimulator("ctl help").status, 0);  // needs nobody
    Simulator simulator({"--frozen", "--adapters", "1,3"});
    const char* const cases[][2] = {
        {"--adapters 5", "\"5\" is no list"},
        {"--adapters 3-1", "\"3-1\" is no list"},
        {"--adapters 1,,2", "\"1,,2\" is no list"},
        {"--seed many", "many"},
        {"stray", "stray"},
        {"ctl no-such", "no-such"},
        {"ctl set", "missing"},
        {"ctl set lex 1.1 state 6", "lex"},
        {"ctl set lec 2.1 state 6", "adapter 2 is not there"},
        {"ctl set lec 1.1 colour 6", "colour"},
        {"ctl set lec 1.1 state six", "six"},
        {"ctl set lec 1.1 mtu 256", "256"},
        {"ctl set ip 1 row 1 ip 10.0.0.256", "10.0.0.256"},
        {"ctl set lec 1.1 row 0 mac 000000000000", "row"},
        {"ctl unset lec 1.1 state", "not set"},
        {"ctl rows lec 1.1 65536", "65535"},
        {"ctl clock step -1", "-1"},
        {"ctl fault lec.nothing every dead", "lec.nothing"},
        {"ctl fault lec every errno EWHAT", "EWHAT"},
        {"ctl quit now", "too many"},
    };
    for (const auto& [words, says] : cases) {
        const Finished ended = runSimulator(words);
        EXPECT_NE(ended.status, 0) << words;
        EXPECT_NE(ended.err.find(says), std::string::npos) << words << ended.err;
    }
    EXPECT_EQ(simulator.ctl("fault"), "");  // a refused command leaves nothing behind
}

TEST(SimCommands, ValuesReadBackAsTheyWereSet) {
    TempRoot root;
    writeSampleConfiguration(root);
    Simulator simulator;
    const struct {
        const char *set, *get, *shown;
    } cases[] = {
        {"set lec 1.2 state 0xff", "get lec 1.2 state", "255"},
        {"set adapter 2 mac 00-A0-3E-00-00-FE", "get adapter 2 mac", "00:a0:3e:00:00:fe"},
        {"clock step 9", "get lec 2.3 mac", "00:a0:3e:00:00:00"},  // derived, and wraps within its byte
        {"set vc 1 row 2 txPackets -1", "get vc 1 row 2 txPackets", "4294967295"},
        {"set lecs 1 row 1 client 00a03e000001/05", "get lecs 1 row 1 client", "00:a0:3e:00:00:01-05"},
        {"alarm 1 los on", "get adapter 1 los", "1"},
        {"link 1 25", "get adapter 1 valid", "0"},
        {"link 1 utp", "get adapter 1 link", "4"},
        {"rows les 1.8 17", "get les 1.8 row 17 state", "3"},
    };
    for (const auto& c : cases) {
        simulator.ctl(c.set);
        EXPECT_EQ(simulator.ctl(c.get), c.shown) << c.set;
    }
    EXPECT_NE(simulator.ctl("show").find("les 1.8 state 0 serves 0 elan \"spare7\" clients 17"),
              std::string::npos);
    EXPECT_NE(simulator.ctl("show lec 1.2").find("state 255  (set)"), std::string::npos);
}

TEST(SimCommands, TheLogShowsWhatCame) {
    TempRoot root;
    Simulator simulator;
    RawClient client(root.at("/dev/li").string());
    client.call("1400 0100 00 01 2000 1000 0100 0000 adde");
    simulator.ctl("fault sig.link nth 1 resp 5");
    client.call("2100 0100 00 00 4c00 1000 0100 0000 adde");
    EXPECT_EQ(simulator.ctl("log hex 3"),
              "1 t=0.000 c1 open read-only -> ok\n"
              "2 t=0.000 c1 lec.state Prim 20 Type 1 Link 0 Unit 1 Size 32 SzIO 16 RowM 1 NRow 0 -> ok, "
              "32 bytes, RowM 1 NRow 0\n"
              "  14 00 01 00 00 01 20 00 10 00 01 00 00 00 ad de\n"
              "3 t=0.000 c1 sig.link Prim 33 Type 1 Link 0 Unit 0 Size 76 SzIO 16 RowM 1 NRow 0 -> Resp 5 "
              "(wrong size) [fault 1 sig.link nth 1 (seen 1) resp 5]\n"
              "  21 00 01 00 00 00 4c 00 10 00 01 00 00 00 ad de");
    client.send(hex("02 00"));
    EXPECT_TRUE(client.receive().value().empty());
    EXPECT_EQ(simulator.ctl("log 1"), "4 t=0.000 c1 malformed packet of 2 bytes -> hung up");
    simulator.ctl("log clear");
    EXPECT_EQ(simulator.ctl("log all"), "");
}
