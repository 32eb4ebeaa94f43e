// Requests that change the driver, from literal bytes: what they do, and what is refused with which code.
#include "running.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sstream>

namespace {

struct Changed : Running {
    std::optional<RawClient> client;
    explicit Changed(const std::vector<std::string>& options = {"--frozen"})
        : Running(options), client(std::in_place, node(), 2) {}
    void startAgain() {
        simulator.reset();
        simulator.emplace();
    }

    // The values that stand behind "state" or "config" and this place, a blank between them.
    std::string values(std::initializer_list<std::string_view> places) const {
        const std::string all = "\n" + ctl("dump") + "\n";
        std::string result;
        for (const std::string_view place : places) {
            const std::size_t at = all.find(fmt::format("\n{} ", place));
            const std::size_t from = at + place.size() + 2;
            result += at == std::string::npos ? "-" : all.substr(from, all.find('\n', from) - from);
            result += " ";
        }
        if (!result.empty()) result.pop_back();
        return result;
    }
    // The values of the PVCs of a client.
    std::string pvcs(const std::string& place) const {
        std::istringstream lines(ctl("dump config"));
        std::string result;
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with("config " + place + " pvc ")) continue;
            std::istringstream words(line);
            const char* lead = result.empty() ? "" : ", ";
            for (std::string word; words >> word;)
                if (const std::size_t equals = word.find('='); equals != std::string::npos) {
                    result += lead + word.substr(equals + 1);
                    lead = " ";
                }
        }
        return result;
    }
    bool dumps(std::string_view text) const { return ctl("dump").find(text) != std::string::npos; }

    // Service, type, Link, Unit and data; Size and SzIO are what the data give.
    RawClient::Reply send(int prim, int type, int link, int unit, const std::string& data = "") {
        RawBytes bytes = hex(data);
        const int size = 16 + static_cast<int>(bytes.size());
        RawBytes message = hex(fmt::format("{:02x}00 {:02x}00 {:02x} {:02x} {:02x}00 {:02x}00 0000 0000 adde",
                                           prim, type, link, unit, size, size));
        message.insert(message.end(), bytes.begin(), bytes.end());
        return client->call(message);
    }
    int resp(int prim, int type, int link, int unit, const std::string& data = "") {
        return send(prim, type, link, unit, data).resp();
    }
};

std::string field(std::string_view text, std::size_t width = 32) {
    RawBytes bytes(text.begin(), text.end());
    bytes.resize(width);
    return fmt::format("{:02x}", fmt::join(bytes, ""));
}

constexpr char address[] = "4711223344556677889900aabb 00a03e0000f1 07";

// use LECS, address, MTU class, name, type, PVC only, layer-3 MTU
std::string lecData(std::string_view name, std::string_view pvcOnly = "00") {
    return fmt::format("01000000 {} 02000000 {} 01000000 {}000000 76110000", address, field(name), pvcOnly);
}
std::string lesData(std::string_view name) {
    return field(name) + "01000000 03000000 01000000 00000000 00000000";
}
std::string lecsData() {
    return fmt::format("{} 02000000 03000000 04000000 00a03e0000f107 00 00000000", address);
}
std::string mapData(std::string_view client, std::string_view les) {
    return fmt::format("{} {} 00 {}", field("", 32), client, les);
}
// server 10.1.2.3, mask 255.255.0.0 and own 10.1.2.4 in host order
std::string ipData(std::string_view pvcOnly = "00") {
    return fmt::format("0000 0000 0302010a 0000ffff 0402010a {} {}000000", address, pvcOnly);
}

}  // namespace

// The sample's adapter 1: LEC 1 with PVCs 100 (00204000a101) and 101 (00204000a102), LEC 4 and LES 4 not
// enabled, Classical IP with PVC 120 (192.168.10.200), LECS running.
TEST(SimChanges, EachRefusalHasItsCodeAndChangesNothing) {
    Changed sim({"--frozen", "--adapters", "1-2"});
    sim.ctl("clock step 10");
    const std::string zeros(2 * 12, '0');
    const struct {
        int resp, prim, type, link, unit;
        std::string data;
    } steps[] = {
        {2, 17, 0, 0, 0, ""},
        {2, 17, 6, 0, 0, ""},
        {2, 18, 3, 0, 0, ""},
        {2, 19, 6, 0, 0, ""},
        {2, 65, 3, 0, 0, ""},
        {2, 34, 1, 0, 0, ""},
        {3, 17, 2, 2, 0, ""},  // an adapter that is not installed
        {3, 18, 2, 4, 0, ""},
        {3, 65, 2, 255, 0, ""},
        {4, 17, 2, 0, 4, ""},
        {4, 18, 2, 0, 8, ""},
        {4, 65, 2, 0, 1, ""},
        {8, 17, 3, 0, 3, "00204000a301 6400 01 00 01 00"},  // LEC 4 does not run
        {8, 17, 4, 0, 3, "00204000a301 6400 01 00 01 00"},
        {8, 17, 5, 0, 3, "00204000a301 6400 01 00 01 00"},
        {9, 18, 1, 0, 0, lesData("engineering")},  // they run
        {9, 19, 1, 0, 0, lecsData()},
        {11, 17, 3, 0, 0, "00204000a301 1f00 01 00 01 00"},
        {11, 17, 3, 0, 0, "00204000a301 8813 01 00 01 00"},
        {11, 17, 5, 0, 0, "00204000a101 8813 01 00 01 00"},
        {11, 65, 4, 0, 0, "0a010203 1f00 01 00"},
        {0, 17, 3, 0, 0, "00204000a301 2000 01 00 01 00"},
        {0, 17, 3, 0, 0, "00204000a302 8713 01 00 01 00"},
        {12, 17, 3, 0, 1, "00204000a301 6400 01 00 01 00"},  // LEC 1 has 100, Classical IP 120
        {12, 17, 3, 0, 1, "00204000a301 7800 01 00 01 00"},
        {12, 65, 4, 0, 0, "0a010203 6400 01 00"},
        {12, 17, 5, 0, 0, "00204000a101 7800 01 00 01 00"},
        {0, 17, 3, 1, 0, "00204000a301 6400 01 00 01 00"},  // another adapter's are its own
        {13, 17, 3, 0, 0, "00204000a101 2100 01 00 01 00"},
        {13, 65, 4, 0, 0, "c0a80ac8 2100 01 00"},
        {13, 17, 5, 0, 0, "00204000a102 6400 01 00 01 00"},  // the address of 101
        {0, 17, 3, 0, 1, "00204000a101 2100 01 00 01 00"},   // of another client
        {14, 17, 4, 0, 0, "00204000a102 6400 01 00 01 00"},
        {14, 17, 4, 0, 0, "00204000a101 2200 01 00 01 00"},
        {14, 17, 5, 0, 0, "00204000a1ff 2200 01 00 01 00"},
        {14, 65, 5, 0, 0, "c0a80ac9 7800 01 00"},
        {4, 19, 3, 0, 0, mapData("00204000f001 00", "08000000")},
        {4, 19, 3, 0, 0, mapData("00204000f001 00", "ffffffff")},
        {15, 19, 3, 0, 1, mapData("00204000c101 00", "01000000")},
        {0, 19, 3, 0, 1, mapData("00204000c101 01", "01000000")},
        {16, 19, 4, 0, 0, mapData("00204000f001 00", "00000000")},
        {0, 19, 2, 0, 0, ""},
        {10, 19, 5, 0, 0, ""},
        {10, 19, 3, 0, 0, mapData("00204000f001 00", "00000000")},
        {10, 19, 4, 0, 0, mapData("00204000c101 00", "00000000")},
        {17, 17, 1, 0, 0, lecData("a name of thirty-two characters!")},
        {17, 18, 1, 0, 3, lesData("a name of thirty-two characters!")},
        {0, 65, 2, 0, 0, ""},
        {8, 65, 4, 0, 0, "0a010203 2100 01 00"},
        {0, 17, 2, 0, 3, ""},  // stopping what does not run is no fault
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(fmt::format("prim {} type {} link {} unit {} {}", step.prim, step.type, step.link,
                                 step.unit, step.data));
        const std::string before = sim.ctl("dump");
        const auto reply = sim.send(step.prim, step.type, step.link, step.unit, step.data);
        EXPECT_EQ(reply.resp(), step.resp);
        EXPECT_EQ(reply.message.size(), 16u);
        if (step.resp != 0) {
            EXPECT_EQ(sim.ctl("dump"), before);
        }
    }
}

TEST(SimChanges, OnlyTheRightLengthsAreTaken) {
    Changed sim;
    const std::string before = sim.ctl("dump");
    const struct {
        int prim, types, size, szIO;  // types as hexadecimal digits
    } cases[] = {{17, 0x1, 88, 88}, {17, 0x2, 16, 16},   {17, 0x345, 28, 28}, {18, 0x1, 68, 68},
                 {18, 0x2, 16, 16}, {19, 0x134, 60, 60}, {19, 0x25, 16, 16},  {65, 0x1, 56, 56},
                 {65, 0x2, 16, 16}, {65, 0x456, 24, 24}, {34, 0x3, 76, 27}};
    for (const auto& c : cases)
        for (int types = c.types; types != 0; types >>= 4)
            for (const auto& [size, szIO] : {std::pair{c.size - 1, c.szIO - 1},
                                             {c.size + 1, c.szIO + 1},
                                             {c.size, c.szIO - 1},
                                             {c.size, c.szIO + 1}}) {
                if (size < 16) continue;  // no message at all
                RawBytes message = hex(fmt::format("{:02x}00 {:02x}00 00 00 {:02x}00 {:02x}00 0000 0000 adde",
                                                   c.prim, types & 15, size, szIO));
                message.resize(static_cast<std::size_t>(size));
                EXPECT_EQ(sim.client->call(message).resp(), 5)
                    << c.prim << " " << types << " " << size << " " << szIO;
            }
    EXPECT_EQ(sim.ctl("dump"), before);
}

TEST(SimChanges, AClientsLife) {
    Changed sim;
    sim.ctl("clock step 60");
    constexpr char pvc[] = "00204000a301 c800 01 00 01 00";
    const std::string config = lecData("guests");  // the ELAN of LES 3
    ASSERT_EQ(sim.resp(17, 1, 0, 3, config), 0);
    EXPECT_EQ(sim.values({"config lec 1.4 enabled", "config lec 1.4 useLecs", "config lec 1.4 address",
                          "config lec 1.4 mtuClass", "config lec 1.4 elanName", "config lec 1.4 elanType",
                          "config lec 1.4 pvcOnly", "config lec 1.4 l3Mtu"}),
              "1 1 47:11:22:33:44:55:66:77:88:99:00:aa:bb:00:a0:3e:00:00:f1:07 2 \"guests\" 1 0 4470");
    ASSERT_EQ(sim.resp(17, 3, 0, 3, pvc), 0);
    constexpr char row[] = "\nstate lec 1.4 row 1 mac=00:20:40:00:a3:01 kind=0 ", circuit[] = " vci=200 ",
                   joined[] = "mac=00:a0:3e:00:00:04 ";
    for (int second = 0; second < 7; ++second, sim.ctl("clock step 1")) {
        EXPECT_EQ(sim.values({"state lec 1.4 state", "state lec 1.4 elanName"}),
                  fmt::format("{} guests", std::min(second + 1, 6)));
        EXPECT_TRUE(sim.dumps(row) && sim.dumps(circuit)) << second;  // a PVC waits for nobody
        EXPECT_EQ(sim.dumps(joined), second >= 5) << second;
    }
    const std::string packets = sim.values({"state vc 1 row 6"});
    EXPECT_TRUE(packets.starts_with("vci=200 ") && packets.find("txPackets=0") == std::string::npos)
        << packets;

    ASSERT_EQ(sim.resp(17, 1, 0, 3, config), 0);  // again: from the beginning, and without its PVC
    EXPECT_EQ(sim.values({"state lec 1.4 state", "state lec 1.4 rows"}), "1 0");
    EXPECT_FALSE(sim.dumps(circuit) || sim.dumps(joined));
    ASSERT_EQ(sim.resp(17, 3, 0, 3, pvc), 0);
    sim.ctl("clock step 60");
    EXPECT_TRUE(sim.dumps(joined));
    ASSERT_EQ(sim.resp(17, 2, 0, 3), 0);
    EXPECT_EQ(sim.values({"state lec 1.4 state", "state lec 1.4 rows", "state lec 1.4 controlDirectVci",
                          "config lec 1.4 enabled", "config lec 1.4 elanName"}),
              "0 0 0 0 -");
    EXPECT_FALSE(sim.dumps(circuit) || sim.dumps(joined));

    ASSERT_EQ(sim.resp(17, 1, 0, 3, lecData("bridge", "01")), 0);  // on PVCs only
    ASSERT_EQ(sim.resp(17, 3, 0, 3, pvc), 0);
    sim.ctl("clock step 60");
    EXPECT_EQ(sim.values({"state lec 1.4 state", "state lec 1.4 works", "state lec 1.4 rows"}), "1 1 1");
}

// A change is about the PVC with the VCI, or else the one with the address.
TEST(SimChanges, PvcsChange) {
    Changed sim;
    const struct {
        int prim, type;
        const char *data, *list;
    } steps[] = {
        {17, 5, "00204000a1ff 6400 00 00 00 00", "00:20:40:00:a1:ff 100 0 0, 00:20:40:00:a1:02 101 1 0"},
        {17, 5, "00204000a1ff 6600 01 00 01 00", "00:20:40:00:a1:02 101 1 0, 00:20:40:00:a1:ff 102 1 1"},
        {17, 3, "00204000a1fe 6400 01 00 01 00",  // 100 is free again
         "00:20:40:00:a1:fe 100 1 1, 00:20:40:00:a1:02 101 1 0, 00:20:40:00:a1:ff 102 1 1"},
        {17, 4, "00204000a102 6500 00 00 00 00", "00:20:40:00:a1:fe 100 1 1, 00:20:40:00:a1:ff 102 1 1"},
        {17, 3, "00204000a103 6500 00 00 00 00",  // and so is 101
         "00:20:40:00:a1:fe 100 1 1, 00:20:40:00:a1:03 101 0 0, 00:20:40:00:a1:ff 102 1 1"},
        {65, 4, "0a010203 7700 00 00", "10.1.2.3 119 0, 192.168.10.200 120 1"},
        {65, 6, "0a010204 7700 01 00", "10.1.2.4 119 1, 192.168.10.200 120 1"},
        {65, 6, "0a010204 7900 00 00", "192.168.10.200 120 1, 10.1.2.4 121 0"},
        {65, 5, "c0a80ac8 7800 01 00", "10.1.2.4 121 0"},
    };
    for (const auto& step : steps) {
        ASSERT_EQ(sim.resp(step.prim, step.type, 0, 0, step.data), 0) << step.data;
        EXPECT_EQ(sim.pvcs(step.prim == 17 ? "lec 1.1" : "ip 1"), step.list) << step.data;
    }
    EXPECT_TRUE(sim.dumps("\nstate ip.pvc 1 row 1 ip=10.1.2.4 vci=121 encap=0\n"));
    EXPECT_TRUE(sim.dumps("\nstate ip 1 row 1 state=2 kind=0 vci=121 "));
}

TEST(SimChanges, ServersAndClassicalIp) {
    Changed sim;
    sim.ctl("clock step 60");
    // Stop, load, go, then the mappings.
    ASSERT_EQ(sim.resp(19, 2, 0, 0), 0);
    EXPECT_EQ(sim.values({"state lecs 1 state", "state lecs 1 rows"}), "0 0");
    ASSERT_EQ(sim.resp(19, 1, 0, 0, lecsData()), 0);
    ASSERT_EQ(sim.resp(19, 3, 0, 2, mapData("00204000f001 05", "02000000")), 0);
    EXPECT_EQ(sim.values({"state lecs 1 state"}), "0");
    ASSERT_EQ(sim.resp(19, 5, 0, 0), 0);
    for (const char* state : {"1", "2", "3", "4", "4"}) {
        EXPECT_EQ(sim.values({"state lecs 1 state"}), state);
        sim.ctl("clock step 1");
    }
    EXPECT_EQ(sim.values({"state lecs 1 elanType", "state lecs 1 etherMtu", "state lecs 1 tokenRingMtu",
                          "state lecs 1 row 1", "config lecs 1 mapping 00:20:40:00:f0:01-05 les"}),
              "2 3 4 client=00:20:40:00:f0:01-05 les=2 kind=1 1.3");
    // The two clients that it learned of; one is forgotten until it starts again.
    constexpr char learned[] = "client=00:a0:3e:00:00:01-00 les=0 kind=2";
    EXPECT_EQ(sim.values({"state lecs 1 rows", "state lecs 1 row 2"}), fmt::format("3 {}", learned));
    ASSERT_EQ(sim.resp(19, 4, 0, 0, mapData("00a03e000001 00", "00000000")), 0);
    ASSERT_EQ(sim.resp(19, 4, 0, 0, mapData("00204000f001 05", "00000000")), 0);
    EXPECT_EQ(sim.values({"state lecs 1 rows"}), "1");
    ASSERT_EQ(sim.resp(17, 1, 0, 0, lecData("engineering")), 0);
    sim.ctl("clock step 6");
    EXPECT_TRUE(sim.dumps(learned));
    ASSERT_EQ(sim.resp(19, 5, 0, 0), 0);  // while it runs: from the beginning
    EXPECT_EQ(sim.values({"state lecs 1 state"}), "1");

    ASSERT_EQ(sim.resp(18, 2, 0, 0), 0);
    EXPECT_EQ(sim.values({"state les 1.1 state", "state les 1.1 rows", "config les 1.1 enabled"}), "0 0 0");
    ASSERT_EQ(sim.resp(18, 1, 0, 0, lesData("new")), 0);
    sim.ctl("clock step 60");
    EXPECT_EQ(sim.values({"config les 1.1 elanName", "config les 1.1 strictName", "config les 1.1 mtuClass",
                          "config les 1.1 strictMtu", "config les 1.1 elanType", "state les 1.1 state",
                          "state les 1.1 serves"}),
              "\"new\" 1 3 1 0 1 1");

    for (const char* pvcOnly : {"00", "01"}) {
        ASSERT_EQ(sim.resp(65, 1, 0, 0, ipData(pvcOnly)), 0);
        EXPECT_EQ(sim.values({"config ip 1 serverIp", "config ip 1 subnetMask", "config ip 1 ip",
                              "config ip 1 address", "state ip 1 state", "state ip.pvc 1 rows"}),
                  fmt::format("10.1.2.3 255.255.0.0 10.1.2.4 "
                              "47:11:22:33:44:55:66:77:88:99:00:aa:bb:00:a0:3e:00:00:f1:07 {} 0",
                              pvcOnly[1] == '1' ? 5 : 1));
        ASSERT_EQ(sim.resp(65, 4, 0, 0, "c0a80ac8 7800 01 00"), 0);  // as before the start, which dropped it
        sim.ctl("clock step 60");
        EXPECT_EQ(sim.values({"state ip 1 state"}), "5");
        EXPECT_EQ(sim.values({"state ip 1 rows"}) == "1", pvcOnly[1] == '1');
    }
    ASSERT_EQ(sim.resp(65, 2, 0, 0), 0);
    EXPECT_EQ(sim.values({"state ip 1 state", "state ip 1 rows"}), "0 0");
}

// The read-only connection carries the trace switch; who may use it is tested with the other privileges.
TEST(SimChanges, TracesAreSwitched) {
    Changed sim;
    RawClient reader(sim.root.at("/dev/li").string());
    const struct {
        const char* payload;
        int resp;
        const char* states;  // api, signalling, ilmi
    } steps[] = {{"00 01 01", 0, "1 0 0"},  {"00 04 01", 0, "1 0 1"},  {"00 02 01", 0, "1 1 1"},
                 {"00 01 00", 0, "0 1 1"},  {"00 03 01", 17, "0 1 1"}, {"00 00 01", 17, "0 1 1"},
                 {"00 01 02", 17, "0 1 1"}, {"01 01 01", 17, "0 1 1"}};
    for (const auto& step : steps) {
        RawBytes message =
            hex(fmt::format("2200 0300 00 00 4c00 1b00 0000 0000 adde {} {}", field("", 8), step.payload));
        message.resize(76);
        EXPECT_EQ(reader.call(message).resp(), step.resp) << step.payload;
        EXPECT_EQ(sim.values({"state trace api", "state trace signalling", "state trace ilmi"}), step.states);
    }
}

TEST(SimChanges, FaultsStrikeByEachName) {
    Changed sim;
    const struct {
        const char* fault;
        bool done;
    } cases[] = {
        {"lec.control every resp 5", false}, {"lec.pvc-add every errno EIO", false},
        {"lec every dead", false},           {"any every resp 8", false},
        {"lec.pvc-add every short 0", true}, {"lec.control every malformed id", true},
        {"lec.pvc-delete every dead", true},
    };
    int vci = 200;
    for (const auto& c : cases) {
        sim.ctl(std::string("fault ") + c.fault);
        sim.send(17, 3, 0, 0, fmt::format("0020400000{:02x} {:02x}00 01 00 01 00", vci, vci));
        sim.ctl("fault clear");
        EXPECT_EQ(sim.dumps(fmt::format("config lec 1.1 pvc {:05} ", vci)), c.done) << c.fault;
        ++vci;
    }
    EXPECT_EQ(sim.ctl("log hex 1"), "8 t=0.000 c1 lec.pvc-add Prim 17 Type 3 Link 0 Unit 0 Size 28 SzIO 28 "
                                    "RowM 0 NRow 0 -> ok, 16 bytes, "
                                    "RowM 0 NRow 0\n  11 00 03 00 00 00 1c 00 1c 00 00 00 00 00 ad de 00 20 "
                                    "40 00 00 ce ce 00 01 00 01 00");
}

// At the start as later: the first one stays.
TEST(SimChanges, WhatFilesHoldTwiceIsLeftOut) {
    Changed sim;
    std::string pvcs;
    for (const auto& [vci, mac] : {std::pair{100, "00204000a301"},
                                   {9000, "00204000a302"},
                                   {200, "00204000a303"},
                                   {201, "00204000a303"}})
        pvcs += fmt::format("[PVC\n\tVC={}\n\tAddr={}\n\tEncap=1\n\tBcast=0\n\tRate=0\n]\n", vci, mac);
    sim.root.write("/etc/atm/pvcconf0.1", pvcs);
    sim.root.write("/etc/atm/pvcconf0.3", pvcs);  // of a client that is not enabled
    sim.root.write("/etc/atm/elan0.2", "00204000c101/00\n00204000f001/00\n");
    sim.startAgain();
    EXPECT_EQ(sim.pvcs("lec 1.1"), "00:20:40:00:a1:01 100 1 1, 00:20:40:00:a1:02 101 1 0");
    EXPECT_EQ(sim.pvcs("lec 1.2"), "00:20:40:00:a3:03 200 1 0");
    EXPECT_EQ(sim.pvcs("lec 1.4"), "");
    EXPECT_EQ(sim.values({"config lecs 1 mapping 00:20:40:00:c1:01-00 les",
                          "config lecs 1 mapping 00:20:40:00:f0:01-00 les"}),
              "1.1 1.3");
}
