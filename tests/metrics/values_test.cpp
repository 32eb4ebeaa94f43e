// The table of values against a simulated driver: every row reads the field that it names.
#include "metrics/reading.h"
#include "tests/support/simulator.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

using metrics::Group;
using metrics::Metric;
using metrics::Place;
using metrics::Service;
using metrics::Unknown;
using metrics::Value;

namespace {

struct Text {
    std::string operator()(Unknown why) const { return fmt::format("unknown: {}", metrics::wordsOf(why)); }
    std::string operator()(std::uint32_t number) const { return std::to_string(number); }
    std::string operator()(bool flag) const { return flag ? "yes" : "no"; }
    std::string operator()(const metrics::State& state) const {
        return fmt::format("{} {}", state.code, state.words ? state.words : "-");
    }
    std::string operator()(const metrics::Unnamed& unnamed) const {
        return fmt::format("code {}", unnamed.code);
    }
    std::string operator()(const std::string& text) const { return text; }
};

struct Driver : SampleRoot {
    Driver() { simulator.ctl("clock step 100"), channel.open(O_RDONLY); }

    void set(const std::string& field) { simulator.ctl("set " + field); }

    metrics::Reading read(Service service, int instance = 0) {
        metrics::Reader reader(channel);
        return reader.read({service, 0, instance});
    }

    // The value "adapter1.rxCells", or "adapter1/lec1.connections[1].vci", of the first adapter.
    std::string value(const std::string& path) {
        const std::size_t dot = path.find('.'), bracket = path.find('[');
        const std::string name = path.substr(path.rfind('.') + 1);
        const std::string table = bracket == path.npos ? "" : path.substr(dot + 1, bracket - dot - 1);
        const std::size_t row = bracket == path.npos ? 0 : std::stoul(path.substr(bracket + 1));
        for (const Place& place : metrics::placesOf(0)) {
            if (metrics::pathOf(place) != path.substr(0, dot)) continue;
            const metrics::Reading reading = read(place.service, place.instance);
            for (const Group& group : metrics::groupsOf(place.service))
                for (const Metric& metric : group.metrics)
                    if (name == metric.name && table == group.table)
                        return std::visit(Text(), reading.value(group, metric, row));
        }
        return "there is no " + path;
    }

    Simulator simulator;
    DriverChannel channel;
};

constexpr char prefix[] = "47:01:02:03:04:05:06:07:08:09:0a:0b:0c";
constexpr char esi[] = "0d:0e:0f:10:11:12-13";
constexpr char atm[] = "470102030405060708090a0b0c0d0e0f10111213";

// What is set in the simulator, and what is read then. Values that tell their fields apart.
struct Row {
    const char* path;
    std::string set;
    const char* value;
};
const Row rows[] = {
    {"adapter1.mac", "adapter 1 mac 00:a0:3e:01:02:03", "00:a0:3e:01:02:03"},
    {"adapter1.linkKind", "adapter 1 link 4", "4 155 UTP"},
    {"adapter1.lossOfSignal", "adapter 1 los 256", "yes"},
    {"adapter1.outOfFrame", "adapter 1 oof 1", "yes"},
    {"adapter1.farEndFailure", "adapter 1 ferf 65536", "yes"},
    {"adapter1.alarmIndication", "adapter 1 ais 1", "yes"},
    {"adapter1.lossOfPointer", "adapter 1 lop 1", "yes"},
    {"adapter1.lossOfFrame", "adapter 1 lof 1", "yes"},
    {"adapter1.linkDown", "adapter 1 linkAlarm 1", "unknown: this link has no such alarm"},
    {"adapter1.rxPackets", "adapter 1 rxPackets 4294967295", "4294967295"},
    {"adapter1.rxCells", "adapter 1 rxCells 2", "2"},
    {"adapter1.txPackets", "adapter 1 txPackets 3", "3"},
    {"adapter1.txCells", "adapter 1 txCells 4", "4"},
    {"adapter1.rxDropped", "adapter 1 rxDrops1 4294967290", nullptr},
    {"adapter1.rxDropped", "adapter 1 rxDrops2 10", "4"},  // sums wrap, too
    {"adapter1.rxFrameErrors", "adapter 1 rxFrameErrors4 4294967295", nullptr},
    {"adapter1.rxFrameErrors", "adapter 1 rxFrameErrors1 6", "5"},
    {"adapter1.txDropped", "adapter 1 txDrops 7", "7"},
    {"adapter1.invalidVpis", "adapter 1 invalidVpis 8", "8"},
    {"adapter1.invalidVcis", "adapter 1 invalidVcis 9", "9"},
    {"adapter1.rxCellErrors", "adapter 1 rxCellErrors4 100", "100"},
    {"adapter1.circuits[1].vci", "vc 1 row 2 vci 16", "16"},
    {"adapter1.circuits[1].rxFrames", "vc 1 row 2 rxPackets 11", "11"},
    {"adapter1.circuits[1].txFrames", "vc 1 row 2 txPackets 12", "12"},
    {"adapter1/signalling.ilmiState", "sig 1 ilmi 3", "3 ILMI Static Registration"},
    {"adapter1/signalling.saalState", "sig 1 saal 77", "77 -"},
    {"adapter1/signalling.signallingState", "sig 1 signalling 255", "255 Signalling Not configured"},
    {"adapter1/signalling.networkPrefix", fmt::format("sig 1 address {}", atm), prefix},
    {"adapter1/signalling.esiSelector", "", esi},
    {"adapter1/signalling.ilmiRxFrames", "", "11"},
    {"adapter1/signalling.ilmiTxFrames", "", "12"},
    {"adapter1/signalling.signallingRxFrames", "vc 1 row 1 rxPackets 13", "13"},
    {"adapter1/signalling.signallingTxFrames", "vc 1 row 1 txPackets 14", "14"},
    {"adapter1/lec1.state", "lec 1.1 state 6", "6 Joined"},
    {"adapter1/lec1.running", "", "yes"},
    {"adapter1/lec1.elanName", "lec 1.1 elanName second\x1b", "second\x1b"},
    {"adapter1/lec1.elanType", "lec 1.1 elanType 2", "tokenRing"},
    {"adapter1/lec1.mtu", "lec 1.1 mtu 3", "9234"},
    {"adapter1/lec1.mac", "lec 1.1 mac 00:a0:3e:04:05:06", "00:a0:3e:04:05:06"},
    {"adapter1/lec1.networkPrefix", fmt::format("lec 1.1 address {}", atm), prefix},
    {"adapter1/lec1.esiSelector", "", esi},
    {"adapter1/lec1.controlDirectVci", "lec 1.1 controlDirectVci 16", "16"},
    {"adapter1/lec1.controlDirectRxPackets", "", "11"},
    {"adapter1/lec1.controlDirectTxPackets", "", "12"},
    {"adapter1/lec1.controlDirectNetworkPrefix", fmt::format("lec 1.1 controlDirect {}", atm), prefix},
    {"adapter1/lec1.controlDirectEsiSelector", "", esi},
    {"adapter1/lec1.controlDistributeVci", "lec 1.1 controlDistributeVci 5", "5"},
    {"adapter1/lec1.controlDistributeRxPackets", "", "13"},
    {"adapter1/lec1.controlDistributeTxPackets", "", "14"},
    {"adapter1/lec1.controlDistributeNetworkPrefix", fmt::format("lec 1.1 controlDistribute {}", atm),
     prefix},
    {"adapter1/lec1.controlDistributeEsiSelector", "", esi},
    {"adapter1/lec1.multicastSendVci", "lec 1.1 multicastSendVci 4999",
     "4999"},  // which the driver does not list
    {"adapter1/lec1.multicastSendRxPackets", "", "unknown: the driver does not list the virtual circuit"},
    {"adapter1/lec1.multicastSendTxPackets", "", "unknown: the driver does not list the virtual circuit"},
    {"adapter1/lec1.multicastSendNetworkPrefix", fmt::format("lec 1.1 multicastSend {}", atm), prefix},
    {"adapter1/lec1.multicastSendEsiSelector", "", esi},
    {"adapter1/lec1.multicastForwardVci", "lec 1.1 multicastForwardVci 0", "unknown: not connected"},
    {"adapter1/lec1.multicastForwardRxPackets", "", "unknown: not connected"},
    {"adapter1/lec1.multicastForwardTxPackets", "", "unknown: not connected"},
    {"adapter1/lec1.multicastForwardNetworkPrefix", "", "unknown: not connected"},
    {"adapter1/lec1.multicastForwardEsiSelector", "", "unknown: not connected"},
    {"adapter1/lec1.connections[1].mac", "lec 1.1 row 2 mac 00:20:00:00:00:02", "00:20:00:00:00:02"},
    {"adapter1/lec1.connections[1].switched", "lec 1.1 row 2 kind 1", "yes"},
    {"adapter1/lec1.connections[1].vci", "lec 1.1 row 2 vci 65535", "65535"},
    {"adapter1/lec1.connections[1].rxPackets", "lec 1.1 row 2 rxPackets 21", "21"},
    {"adapter1/lec1.connections[1].txPackets", "lec 1.1 row 2 txPackets 22", "22"},
    {"adapter1/lec1.connections[1].networkPrefix", fmt::format("lec 1.1 row 2 address {}", atm), prefix},
    {"adapter1/lec1.connections[1].esiSelector", "", esi},
    {"adapter1/les1.state", "les 1.1 state 1", "1 Serving"},
    {"adapter1/les1.running", "", "yes"},
    {"adapter1/les1.elanName", "les 1.1 elanName third", "third"},
    {"adapter1/les1.elanType", "les 1.1 elanType 9", "code 9"},
    {"adapter1/les1.mtu", "les 1.1 mtu 7", "code 7"},
    {"adapter1/les1.networkPrefix", fmt::format("les 1.1 address {}", atm), prefix},
    {"adapter1/les1.esiSelector", "", esi},
    {"adapter1/les1.busNetworkPrefix", fmt::format("les 1.1 bus {}", atm), prefix},
    {"adapter1/les1.busEsiSelector", "", esi},
    {"adapter1/les1.clients[2].mac", "les 1.1 row 3 mac 00:20:00:00:00:03", "00:20:00:00:00:03"},
    {"adapter1/les1.clients[2].state", "les 1.1 row 3 state 2", "2 Signalling B"},
    {"adapter1/les1.clients[2].controlDirectVci", "les 1.1 row 3 controlVci 31", "31"},
    {"adapter1/les1.clients[2].controlDirectRxPackets", "les 1.1 row 3 controlRx 32", "32"},
    {"adapter1/les1.clients[2].controlDirectTxPackets", "les 1.1 row 3 controlTx 33", "33"},
    {"adapter1/les1.clients[2].multicastSendVci", "les 1.1 row 3 multicastVci 34", "34"},
    {"adapter1/les1.clients[2].multicastSendRxPackets", "les 1.1 row 3 multicastRx 35", "35"},
    {"adapter1/les1.clients[2].multicastSendTxPackets", "les 1.1 row 3 multicastTx 36", "36"},
    {"adapter1/les1.clients[2].networkPrefix", fmt::format("les 1.1 row 3 address {}", atm), prefix},
    {"adapter1/les1.clients[2].esiSelector", "", esi},
    {"adapter1/lecs.state", "lecs 1 state 4", "4 Running"},
    {"adapter1/lecs.running", "", "yes"},
    {"adapter1/lecs.registered", "lecs 1 registered 256", "yes"},
    {"adapter1/lecs.elanType", "lecs 1 elanType 1", "ethernet"},
    {"adapter1/lecs.ethernetMtu", "lecs 1 etherMtu 2", "4544"},
    {"adapter1/lecs.tokenRingMtu", "lecs 1 tokenRingMtu 4", "18190"},
    {"adapter1/lecs.networkPrefix", fmt::format("lecs 1 address {}", atm), prefix},
    {"adapter1/lecs.esiSelector", "", esi},
    {"adapter1/lecs.validRequests", "lecs 1 validRequests 41", "41"},
    {"adapter1/lecs.invalidRequests", "lecs 1 invalidRequests 42", "42"},
    {"adapter1/lecs.rejectedRequests", "lecs 1 rejected 43", "43"},
    {"adapter1/lecs.connectionsMade", "lecs 1 made 44", "44"},
    {"adapter1/lecs.connectionsOpen", "lecs 1 open 45", "45"},
    {"adapter1/lecs.clients[1].client", "lecs 1 row 2 client 00:20:00:00:00:04-05", "00:20:00:00:00:04-05"},
    {"adapter1/lecs.clients[1].les", "lecs 1 row 2 les 7", "8"},  // shown from 1, as everywhere
    {"adapter1/lecs.clients[1].learned", "lecs 1 row 2 kind 2", "yes"},
    {"adapter1/ip.connections[1].ip", "ip 1 row 2 ip 10.1.2.3", "10.1.2.3"},
    {"adapter1/ip.connections[1].vci", "ip 1 row 2 vci -1", "65535"},
    {"adapter1/ip.connections[1].state", "ip 1 row 2 state 4", "4 Waiting for InARP response"},
    {"adapter1/ip.connections[1].switched", "ip 1 row 2 kind 0", "no"},
    {"adapter1/ip.connections[1].rxPackets", "ip 1 row 2 rxPackets 61", "61"},
    {"adapter1/ip.connections[1].txPackets", "ip 1 row 2 txPackets 62", "62"},
    {"adapter1/ip.connections[1].networkPrefix", fmt::format("ip 1 row 2 address {}", atm),
     "unknown: a PVC has no address"},
    {"adapter1/ip.connections[1].esiSelector", "", "unknown: a PVC has no address"},
    {"adapter1/ip.state", "ip 1 state 3", "3 Starting"},  // no connections any more, and all counters 0
    {"adapter1/ip.running", "", "no"},
    {"adapter1/ip.rxPackets", "ip 1 rx1 4294967295", nullptr},
    {"adapter1/ip.rxPackets", "ip 1 rx3 52", "51"},
    {"adapter1/ip.txPackets", "ip 1 tx1 53", "53"},
    {"adapter1/ip.rxDropped", "ip 1 rxDrop9 54", "54"},
    {"adapter1/ip.txDropped", "ip 1 txDrop3 55", "55"},
};

}  // namespace

TEST(MetricValues, EveryRowReadsItsField) {
    Driver driver;
    driver.simulator.ctl("set ip 1 state 5");
    std::set<std::string> shown;
    for (const Row& row : rows) {
        if (!row.set.empty()) driver.set(row.set);
        if (row.value) {
            EXPECT_EQ(driver.value(row.path), row.value) << row.path;
        }
        std::string name = row.path;
        if (const std::size_t bracket = name.find('['); bracket != name.npos)
            name.erase(bracket, name.find(']') - bracket + 1);
        shown.insert(name);
    }
    for (const Place& place : metrics::placesOf(0))
        for (const Group& group : metrics::groupsOf(place.service))
            for (const Metric& metric : group.metrics) {
                if (place.instance != 0) continue;
                const std::string table = group.isTable() ? group.table + std::string(".") : "";
                EXPECT_TRUE(shown.contains(metrics::pathOf(place) + "." + table + metric.name))
                    << table << metric.name;
            }
}

// Scripts, exports and plots rely on these.
TEST(MetricValues, TheTableIsSound) {
    for (const Service service :
         {Service::adapter, Service::signalling, Service::lec, Service::les, Service::lecs, Service::ip}) {
        std::set<std::string> names;
        for (const Group& group : metrics::groupsOf(service)) {
            std::set<std::string> columns;
            for (const Metric& metric : group.metrics) {
                const std::string name = metric.name, help = metric.help;
                EXPECT_TRUE((group.isTable() ? columns : names).insert(name).second) << name << " twice";
                EXPECT_EQ(
                    name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"),
                    name.npos);
                EXPECT_TRUE(std::islower(static_cast<unsigned char>(name[0]))) << name;
                EXPECT_TRUE(help.size() > 10 && help.ends_with('.') &&
                            help.find_first_of("\"\\\n") == help.npos)
                    << help;
                const bool counter = metric.kind == metrics::Kind::counter;
                EXPECT_EQ(metric.wrapBits, counter ? 32U : 0U) << name;
                EXPECT_TRUE(!counter || *metric.unit) << name;
            }
            EXPECT_EQ(group.isTable(), columns.contains(group.key));
            EXPECT_TRUE(!group.isTable() || names.insert(group.table).second) << group.table;
        }
        EXPECT_FALSE(names.empty());
    }
}

// Which alarms a link has, and when they say something.
TEST(MetricValues, AlarmsDependOnTheLink) {
    Driver driver;
    constexpr char none[] = "unknown: this link has no such alarm";
    constexpr char frames[] = "unknown: not to be seen during loss of frame";
    const struct {
        const char* set;
        std::map<std::string, std::string> alarms;
    } cases[] = {
        {"link 2", {{"lossOfSignal", "no"}, {"farEndFailure", "no"}, {"linkDown", none}}},
        {"lof 1",
         {{"lossOfFrame", "yes"},
          {"farEndFailure", frames},
          {"lossOfPointer", frames},
          {"alarmIndication", "no"}}},
        {"ferf 1", {{"farEndFailure", "yes"}, {"lossOfPointer", frames}}},
        {"link 1", {{"lossOfSignal", none}, {"linkDown", "no"}, {"lossOfFrame", "yes"}}},
        {"linkAlarm 1", {{"linkDown", "yes"}}},
        {"valid 0", {{"linkDown", "yes"}, {"lossOfFrame", "yes"}}},
        {"link 3",
         {{"lossOfSignal", none}, {"lossOfFrame", none}, {"farEndFailure", none}, {"linkDown", none}}},
        {"link 9", {{"lossOfSignal", none}, {"linkKind", "9 -"}}},
    };
    for (const auto& c : cases) {
        driver.set(std::string("adapter 1 ") + c.set);
        for (const auto& [name, value] : c.alarms)
            EXPECT_EQ(driver.value("adapter1." + name), value) << c.set << " " << name;
    }
}

TEST(MetricValues, StatesDecideWhatThereIs) {
    Driver driver;
    const struct {
        const char* set;
        std::map<std::string, std::string> values;
    } cases[] = {
        {"sig 1 ilmi 1", {{"signalling.networkPrefix", "unknown: no address is registered"}}},
        {"lec 1.1 state 3",
         {{"lec1.state", "3 Joining"},
          {"lec1.running", "no"},
          {"lec1.elanName", "engineering"},
          {"lec1.controlDirectVci", "unknown: not connected"},
          {"lec1.connections[0].vci", "100"}}},
        {"lec 1.1 state 1", {{"lec1.state", "1 Starting"}, {"lec1.running", "no"}}},
        {"lec 1.1 works 1", {{"lec1.state", "1 On PVCs"}, {"lec1.running", "yes"}}},
        {"lec 1.1 state 99", {{"lec1.state", "99 -"}, {"lec1.running", "no"}}},
        {"lec 1.1 state 0",
         {{"lec1.state", "0 no such client"},
          {"lec1.elanName", "unknown: there is no such service"},
          {"lec1.connections[0].vci", "unknown: there is no such service"}}},
        {"les 1.1 serves 0", {{"les1.state", "1 Starting"}, {"les1.running", "no"}}},
        {"les 1.1 serves 65536", {{"les1.running", "yes"}}},
    };
    for (const auto& c : cases) {
        driver.set(c.set);
        for (const auto& [name, value] : c.values)
            EXPECT_EQ(driver.value("adapter1/" + name), value) << c.set << " " << name;
    }
    EXPECT_TRUE(driver.read(Service::lec).absent());
    EXPECT_FALSE(driver.read(Service::lec, 1).absent());
    driver.set("sig 1 ilmi 0");
    EXPECT_FALSE(driver.read(Service::signalling).absent());  // a state of 0 is no absence there
}
