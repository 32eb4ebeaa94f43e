// The life of the simulator, and the commands that it takes.
#include "rawclient.h"
#include "tests/support/simulator.h"

#include <csignal>

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
    const Finished version = runSimulator("--version", R"(sh -c '"$0" "$@" >&2')");
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.err, testing::MatchesRegex("tvsim [0-9]+[.][0-9]+\n"));
    const Finished lonely = runSimulator("ctl show");
    EXPECT_EQ(lonely.status, 1);
    EXPECT_NE(lonely.err.find("the root directory is " + root.path().string() + "\n"), std::string::npos)
        << lonely.err;
    const Finished rootless = runSimulator("ctl show", "env -u TARVOLIN_ROOT");
    EXPECT_NE(rootless.err.find("no root directory is set (TARVOLIN_ROOT)\n"), std::string::npos)
        << rootless.err;
    EXPECT_EQ(runSimulator("ctl help").status, 0);  // needs nobody
    Simulator simulator({"--frozen", "--adapters", "1,3"});
    const char* const cases[][2] = {
        {"--adapters 5", "\"5\" is no list"},
        {"--adapters 3-1", "\"3-1\" is no list"},
        {"--adapters 1,,2", "\"1,,2\" is no list"},
        {"--seed many", "many"},
        {"stray", "stray"},
        {"ctl set", "missing"},
        {"ctl set lec 2.1 state 6", "adapter 2 is not there"},
        {"ctl set lec 1.1 mtu 256", "256"},
        {"ctl set ip 1 row 1 ip 10.0.0.256", "10.0.0.256"},
        {"ctl set lec 1.1 row 0 mac 000000000000", "row"},
        {"ctl unset lec 1.1 state", "not set"},
        {"ctl rows lec 1.1 65536", "65535"},
        {"ctl clock step -1", "-1"},
        {"ctl fault lec every errno EWHAT", "EWHAT"},
        {"ctl quit now", "too many"},
        {"ctl fault clear 7", "no fault 7"},
    };
    for (const auto& [words, says] : cases) {
        const Finished ended = runSimulator(words);
        EXPECT_NE(ended.status, 0) << words;
        EXPECT_NE(ended.err.find(says), std::string::npos) << words << ended.err;
    }
    EXPECT_NE(runSimulator("ctl " + std::string(70000, 'x')).err.find("at most 65536 bytes"),
              std::string::npos);
    EXPECT_EQ(simulator.ctl("fault"), "");  // a refused command leaves nothing behind
}

TEST(SimCommands, ANearMissIsAnsweredWithTheFormAndAnExample) {
    constexpr char fault[] = "fault lec.state every resp 5", set[] = "set lec 1.2 state 6";
    constexpr char clock[] = "clock step 60", alarm[] = "alarm 1 los on", rows[] = "rows lec 1.1 14";
    const struct {
        const char *typed, *reason, *example;
    } cases[] = {
        {"every 1 resp 5", "no command \"every\"", fault},
        {"fault every 1 resp 5", "the request comes first", fault},
        {"fault resp 5", "the request comes first", fault},
        {"fault lec.state every 1 resp 5", "every takes no number", fault},
        {"fault lec.state resp 5", "\"every\" or \"nth N\"", fault},
        {"fault lec.state nth resp 5", "nth takes a number from 1, not \"resp\"", fault},
        {"fault lec.state nth", "nth takes a number", fault},
        {"fault lec.state every", "what goes wrong is missing: one of resp, errno", fault},
        {"fault lec.state every resp=5", "nothing goes wrong like \"resp=5\": one of resp, errno", fault},
        {"fault lec.state every resp", "resp takes one value", fault},
        {"fault lec.state every resp five", "resp does not take \"five\": a code from 0 to 65535", fault},
        {"fault lec.state every errno 0", "errno does not take \"0\": a number from 1 to 4095", fault},
        {"fault lec.state every malformed no", "\"no\": short, long, lie, negative or id", fault},
        {"fault lec.state every dead 5", "dead takes no value", fault},
        {"fault list", "no request \"list\"", fault},
        {"fault clear lec.state", "no fault \"lec.state\"", fault},
        {"faults", "no command \"faults\"", fault},
        {"lec 1.2 state 6", "no command \"lec\"", set},
        {"SET lec 1.2 state 6", "no command \"SET\"", set},
        {"set lec 1.2 state=6", "no field \"state=6\"", set},
        {"set lec.state 1.2 6", "no target \"lec.state\"", set},
        {"set lec\x1b[7m\xff 1.2 6", "no target \"lec\\x1b[7m\\xff\"", set},
        {"set lec 1.2 state -1", "\"-1\" does not fit state: number, 4 bytes", set},
        {"set lec 1.2 state", "exactly one value", set},
        {"set lec 1 state 6", "\"1\" is no instance of lec", set},
        {"set lec 1.2 elanName my name", "exactly one value", set},
        {"get lec state", "\"state\" is no instance of lec", "get lec 1.2 state"},
        {"get lec 1.2", "a field is missing", "get lec 1.2 state"},
        {"clock step", "SECONDS", clock},
        {"clock step 5s", "\"5s\" is no number of seconds", clock},
        {"freeze", "no command \"freeze\"", clock},
        {"alarm 1 on los", "one of los, lof", alarm},
        {"los 1 on", "no command \"los\"", alarm},
        {"link mm 1", "ADAPTER", "link 1 sm"},
        {"rows lec 1.1 many", "from 0 to 65535, or auto", rows},
        {"log all hex", "hex [N|all]", "log hex 5"},
        {"dump state", "nothing or config", "dump config"},
        {"show 1.2", "no target \"1.2\"", "show lec 1.2"},
    };
    TempRoot root;
    const Simulator simulator;
    for (const auto& c : cases) {
        std::string answer;
        try {
            answer = "done: " + simulator.ctl(c.typed);
        } catch (const std::runtime_error& refused) {
            answer = std::string(refused.what()).substr(std::string_view(c.typed).size());
        }
        const std::string example = c.example, form = example.substr(0, example.find(' ') + 1);
        EXPECT_NE(answer.find(c.reason), std::string::npos) << c.typed << answer;
        EXPECT_NE(answer.find("; the form is: " + form), std::string::npos) << c.typed << answer;
        EXPECT_TRUE(answer.ends_with("; for example: " + example)) << c.typed << answer;
        EXPECT_EQ(answer.find('\n'), std::string::npos) << c.typed << answer;
    }
    EXPECT_EQ(simulator.ctl("fault"), "");  // nothing was half done
    EXPECT_EQ(simulator.ctl("clock"), "0.000 s, frozen");
    const Finished ended = runSimulator("ctl fault every 1 resp 5");
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.err.ends_with(std::string(fault) + "\n")) << ended.err;
    const Finished without = runSimulator("fault any every dead");
    EXPECT_NE(without.status, 0);
    EXPECT_NE(without.err.find("tvsim ctl fault"), std::string::npos) << without.err;
}

TEST(SimCommands, ValuesReadBackAsTheyWereSet) {
    SampleRoot root;
    Simulator simulator;
    const struct {
        const char *set, *get, *shown;
    } cases[] = {
        {"set lec 1.2 state 0xff", "get lec 1.2 state", "255"},
        {"set adapter 2 mac 00-A0-3E-00-00-FE", "get adapter 2 mac", "00:a0:3e:00:00:fe"},
        {"clock step 9", "get lec 2.3 mac", "00:a0:3e:00:00:00"},  // derived, and wraps within its byte
        {"set vc 1 row 2 txPackets 4294967295", "get vc 1 row 2 txPackets", "4294967295"},
        {"set ip 1 row 2 vci -1", "get ip 1 row 2 vci", "65535"},
        {"set lecs 1 row 1 client 00a03e000001/05", "get lecs 1 row 1 client", "00:a0:3e:00:00:01-05"},
        {"link 1 25", "get adapter 1 valid", "0"},
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
