// Requests that change the driver, from literal bytes: what they do, and what is refused with which code.
#include "running.h"

#include <regex>

namespace {

struct Changed : Running {
    std::optional<RawClient> client;
    explicit Changed(const std::vector<std::string>& options = {"--frozen"})
        : Running(options), client(std::in_place, node(), 2) {}
    // What stands behind "state" or "config" and a place.
    std::string value(std::string_view place) const {
        const std::string all = "\n" + ctl("dump") + "\n";
        const std::size_t at = all.find(fmt::format("\n{} ", place)), from = at + place.size() + 2;
        return at == std::string::npos ? "-" : all.substr(from, all.find('\n', from) - from);
    }
    // The values of the PVCs of a client, a ';' behind each.
    std::string pvcs(const std::string& place) const {
        const std::regex names("config .* pvc [0-9]+ |[a-z]+=");
        std::istringstream lines(ctl("dump config"));
        std::string result;
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("config " + place + " pvc "))
                result += std::regex_replace(line, names, "") + ';';
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
    const struct {
        int resp, prim, type, link, unit;
        std::string data;
    } steps[] = {
        {2, 17, 6, 0, 0, ""},
        {2, 34, 1, 0, 0, ""},
        {3, 18, 2, 2, 0, ""},  // an adapter that is not installed
        {4, 17, 2, 0, 4, ""},
        {4, 18, 2, 0, 8, ""},
        {4, 65, 2, 0, 1, ""},
        {4, 19, 3, 0, 0, mapData("00204000f001 00", "08000000")},
        {5, 17, 3, 0, 0, "00204000a301 6400 01 00 01"},
        {5, 17, 3, 0, 0, "00204000a301 6400 01 00 01 00 00"},
        {8, 17, 3, 0, 3, "00204000a301 6400 01 00 01 00"},  // LEC 4 does not run
        {9, 18, 1, 0, 0, lesData("engineering")},           // they run
        {9, 19, 1, 0, 0, lecsData()},
        {11, 17, 3, 0, 0, "00204000a301 1f00 01 00 01 00"},
        {11, 17, 5, 0, 0, "00204000a101 8813 01 00 01 00"},
        {11, 65, 4, 0, 0, "0a010203 1f00 01 00"},
        {0, 17, 3, 0, 0, "00204000a301 2000 01 00 01 00"},
        {0, 17, 3, 0, 0, "00204000a302 8713 01 00 01 00"},
        {12, 17, 3, 0, 1, "00204000a301 7800 01 00 01 00"},  // Classical IP has 120
        {12, 65, 4, 0, 0, "0a010203 6400 01 00"},            // LEC 1 has 100
        {0, 17, 3, 1, 0, "00204000a301 6400 01 00 01 00"},   // another adapter's are its own
        {13, 17, 3, 0, 0, "00204000a101 2100 01 00 01 00"},
        {13, 17, 5, 0, 0, "00204000a102 6400 01 00 01 00"},  // the address of 101
        {0, 17, 3, 0, 1, "00204000a101 2100 01 00 01 00"},   // of another client
        {14, 17, 4, 0, 0, "00204000a102 6400 01 00 01 00"},
        {14, 65, 5, 0, 0, "c0a80ac9 7800 01 00"},
        {15, 19, 3, 0, 1, mapData("00204000c101 00", "01000000")},
        {16, 19, 4, 0, 0, mapData("00204000f001 00", "00000000")},
        {0, 19, 2, 0, 0, ""},
        {10, 19, 5, 0, 0, ""},
        {17, 17, 1, 0, 0, lecData("a name of thirty-two characters!")},
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

TEST(SimChanges, AClientsLife) {
    Changed sim;
    sim.ctl("clock step 60");
    constexpr char pvc[] = "00204000a301 c800 01 00 01 00";
    constexpr char circuit[] = " vci=200 ", joined[] = "mac=00:a0:3e:00:00:04 ";
    for (int start = 0; start < 2; ++start) {  // the second one begins anew, and without the PVC
        ASSERT_EQ(sim.resp(17, 1, 0, 3, lecData("guests")), 0);
        EXPECT_EQ(sim.value("state lec 1.4 state") + ' ' + sim.value("state lec 1.4 rows"), "1 0");
        EXPECT_FALSE(sim.dumps(circuit) || sim.dumps(joined));
        ASSERT_EQ(sim.resp(17, 3, 0, 3, pvc), 0);
        EXPECT_TRUE(sim.dumps(circuit)) << "a PVC waits for nobody";
        sim.ctl("clock step 60");
        EXPECT_EQ(sim.value("state lec 1.4 state") + ' ' + sim.value("state lec 1.4 elanName"), "6 guests");
        EXPECT_TRUE(sim.dumps(joined));
    }
    ASSERT_EQ(sim.resp(17, 2, 0, 3), 0);
    EXPECT_EQ(sim.value("state lec 1.4 state") + ' ' + sim.value("state lec 1.4 rows") + ' ' +
                  sim.value("config lec 1.4 enabled"),
              "0 0 0");
    EXPECT_FALSE(sim.dumps(circuit) || sim.dumps(joined));

    ASSERT_EQ(sim.resp(17, 1, 0, 3, lecData("bridge", "01")), 0);  // on PVCs only
    ASSERT_EQ(sim.resp(17, 3, 0, 3, pvc), 0);
    sim.ctl("clock step 60");
    EXPECT_EQ(sim.value("state lec 1.4 state") + ' ' + sim.value("state lec 1.4 works") + ' ' +
                  sim.value("state lec 1.4 rows"),
              "1 1 1");
}

// A change is about the PVC with the VCI, or else the one with the address.
TEST(SimChanges, PvcsChange) {
    Changed sim;
    const struct {
        int prim, type;
        const char *data, *list;
    } steps[] = {
        {17, 5, "00204000a1ff 6400 00 00 00 00", "00:20:40:00:a1:ff 100 0 0;00:20:40:00:a1:02 101 1 0;"},
        {17, 5, "00204000a1ff 6600 01 00 01 00", "00:20:40:00:a1:02 101 1 0;00:20:40:00:a1:ff 102 1 1;"},
        {17, 3, "00204000a1fe 6400 01 00 01 00",  // 100 is free again
         "00:20:40:00:a1:fe 100 1 1;00:20:40:00:a1:02 101 1 0;00:20:40:00:a1:ff 102 1 1;"},
        {17, 4, "00204000a102 6500 00 00 00 00", "00:20:40:00:a1:fe 100 1 1;00:20:40:00:a1:ff 102 1 1;"},
        {65, 4, "0a010203 7700 00 00", "10.1.2.3 119 0;192.168.10.200 120 1;"},
        {65, 6, "0a010204 7700 01 00", "10.1.2.4 119 1;192.168.10.200 120 1;"},
        {65, 6, "0a010204 7900 00 00", "192.168.10.200 120 1;10.1.2.4 121 0;"},
        {65, 5, "c0a80ac8 7800 01 00", "10.1.2.4 121 0;"},
    };
    for (const auto& step : steps) {
        ASSERT_EQ(sim.resp(step.prim, step.type, 0, 0, step.data), 0) << step.data;
        EXPECT_EQ(sim.pvcs(step.prim == 17 ? "lec 1.1" : "ip 1"), step.list) << step.data;
    }
}

// What the windows' tests do not see of a load and of the mappings that follow it.
TEST(SimChanges, TheConfigurationServerAndClassicalIp) {
    Changed sim;
    sim.ctl("clock step 60");
    ASSERT_EQ(sim.resp(19, 2, 0, 0), 0);
    ASSERT_EQ(sim.resp(19, 1, 0, 0, lecsData()), 0);
    ASSERT_EQ(sim.resp(19, 3, 0, 2, mapData("00204000f001 05", "02000000")), 0);
    EXPECT_EQ(sim.value("state lecs 1 state"), "0");
    ASSERT_EQ(sim.resp(19, 5, 0, 0), 0);
    sim.ctl("clock step 5");
    EXPECT_EQ(sim.value("state lecs 1 row 1"), "client=00:20:40:00:f0:01-05 les=2 kind=1");
    // A client that it learned of is forgotten until it starts again.
    constexpr char learned[] = "client=00:a0:3e:00:00:01-00 les=0 kind=2";
    EXPECT_EQ(sim.value("state lecs 1 row 2"), learned);
    ASSERT_EQ(sim.resp(19, 4, 0, 0, mapData("00a03e000001 00", "00000000")), 0);
    EXPECT_FALSE(sim.dumps(learned));
    ASSERT_EQ(sim.resp(17, 1, 0, 0, lecData("engineering")), 0);
    sim.ctl("clock step 6");
    EXPECT_TRUE(sim.dumps(learned));

    // A started client has no PVCs; on PVCs only it is up at once.
    ASSERT_EQ(sim.resp(65, 1, 0, 0, ipData("01")), 0);
    EXPECT_EQ(sim.value("config ip 1 ip") + sim.value("state ip 1 state") + sim.pvcs("ip 1"), "10.1.2.45");
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
    sim.simulator.reset();
    sim.simulator.emplace();
    EXPECT_EQ(sim.pvcs("lec 1.1"), "00:20:40:00:a1:01 100 1 1;00:20:40:00:a1:02 101 1 0;");
    EXPECT_EQ(sim.pvcs("lec 1.2"), "00:20:40:00:a3:03 200 1 0;");
    EXPECT_EQ(sim.pvcs("lec 1.4"), "");
    EXPECT_EQ(sim.value("config lecs 1 mapping 00:20:40:00:c1:01-00 les") + ' ' +
                  sim.value("config lecs 1 mapping 00:20:40:00:f0:01-00 les"),
              "1.1 1.3");
}
