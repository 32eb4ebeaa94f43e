#include "model/rules.h"

#include "model/statecodes.h"

namespace {

constexpr const char* good = "4700790000000000000000000000a03e00000100";
constexpr const char* zero = "4000000000000000000000000000000000000000";

// Two clients and a server that work together, and a Classical IP client.
AdapterRecords working() {
    AdapterRecords records;
    AtmLEC client;
    client.enabled = 1;
    client.elanName = "blue";
    client.l3Mtu = 1500;
    client.elanType = 0;
    client.address = good;
    client.pvcFile = "/etc/atm/pvc0";
    AtmBridgedPvc pvc;
    pvc.mac = "00:20:40:00:a1:01 ";
    pvc.vci = 100;
    client.pvcs = {pvc};
    records.lec[0] = client;
    client.pvcFile = "/etc/atm/pvc1";
    client.pvcs[0].vci = 101;
    records.lec[1] = client;
    AtmLES& server = records.les[0];
    server.enabled = 1;
    server.elanName = "blue";
    server.clientFile = "/etc/atm/elan0";
    esiSelector one;
    one = "00:20:40:00:c1:01-00";
    server.clients = {one};
    AtmIP1577& ip = records.ip;
    ip.enabled = 1;
    ip.ip = "192.168.1.10";
    ip.subnetMask = "255.255.255.0";
    ip.serverIp = "192.168.1.1";
    ip.address = good;
    AtmRoutedPvc routed;
    routed.ip = "192.168.1.20";
    routed.vci = 120;
    ip.pvcs = {routed};
    return records;
}

std::string text(const std::vector<Finding>& findings) {
    std::string all;
    for (const Finding& finding : findings)
        all += fmt::format("{}{} {} {}: {}", all.empty() ? "" : "; ",
                           finding.severity == Severity::error ? "error" : "warning", finding.number,
                           finding.path, finding.message);
    return all;
}

struct Case {
    const char* name;
    std::function<void(AdapterRecords&)> spoil;
    const char* found;
};
const Case cases[] = {
    {"Nothing", [](auto&) {}, ""},
    {"L3Mtu", [](auto& r) { r.lec[1].l3Mtu = 0; }, "error 1 lec2.l3Mtu: L3 MTU 0: no packet fits into it"},
    {"L3MtuAbove", [](auto& r) { r.lec[1].l3Mtu = 1517; },
     "warning 201 lec2.l3Mtu: L3 MTU 1517 is above the ELAN MTU 1516"},
    {"AsLargeAsTheElans", [](auto& r) { r.lec[1].l3Mtu = 1516; }, ""},
    {"NoName", [](auto& r) { r.lec[0].elanName = ""; },
     "warning 2 lec1.elanName: This is an enabled client without an ELAN name"},
    {"PvcOnlyNeedsNoServer",
     [](auto& r) {
         r.lec[0].pvcOnly = 1;
         r.lec[0].elanName = "";
         r.lec[0].address = zero;
         r.lec[0].l3Mtu = 9000;
         r.ip.pvcOnly = 1;
         r.ip.serverIp = "";
     },
     ""},
    {"LongName", [](auto& r) { r.les[0].elanName = r.lec[0].elanName = std::string(31, 'x'); },
     "warning 112 lec1.elanName: Of an ELAN name of 31 characters the last one is lost when the file is "
     "read; "
     "warning 112 les1.elanName: Of an ELAN name of 31 characters the last one is lost when the file is "
     "read"},
    {"Bypassed",
     [](auto& r) {
         r.lec[0].useLecs = 0;
         r.lec[0].address = zero;
     },
     "error 108 lec1.networkPrefix: The LECS is bypassed, and the address of the LES is zero"},
    {"NoLecs", [](auto& r) { r.lec[0].address = zero; },
     "warning 115 lec1.networkPrefix: The LECS is used, and its address is zero"},
    {"Prefix",
     [](auto& r) {
         r.lec[0].address = "48";
         r.sig.addressRegistration = 0;
         r.sig.address = "91";
     },
     "warning 107 signalling.networkPrefix: A network prefix begins with 39, 45 or 47, not with 91; "
     "warning 107 lec1.networkPrefix: A network prefix begins with 39, 45 or 47, not with 48"},
    {"Vcis",
     [](auto& r) {
         r.lec[0].pvcs[0].vci = 5;
         r.lec[1].pvcs[0].vci = 16;
         r.ip.pvcs[0].vci = 31;
     },
     "error 3 lec1.pvcs[0]: VCI 5 belongs to signalling; error 3 lec2.pvcs[0]: VCI 16 belongs to ILMI; "
     "error 102 ip.pvcs[0]: VCI 31 is reserved, as all up to 31 are"},
    {"FirstFreeVci", [](auto& r) { r.ip.pvcs[0].vci = 32; }, ""},
    {"VciTwice", [](auto& r) { r.ip.pvcs[0].vci = 101; },
     "error 101 ip.pvcs[0]: VCI 101 is used by LEC 2 already"},
    {"VciOfADisabledClient",
     [](auto& r) {
         r.ip.pvcs[0].vci = 101;
         r.lec[1].enabled = 0;
     },
     ""},
    {"Mac",
     [](auto& r) {
         r.lec[0].pvcs[0].mac = "01:00:5e:00:00:01 ";
         r.lec[1].pvcs[0].mac = macAddress();
     },
     "warning 106 lec1.pvcs[0]: 01:00:5e:00:00:01 is the address of a group; "
     "warning 203 lec2.pvcs[0]: The PVC leads to a MAC address of zeros"},
    {"NoAddress", [](auto& r) { r.ip.ip = "300.1.1.1"; }, "error 4 ip.address: 300.1.1.1 is no address"},
    {"AddressMissing", [](auto& r) { r.ip.ip = ""; },
     "error 4 ip.address: This is an enabled client without an IP address"},
    {"AddressMissingAsStored", [](auto& r) { r.ip.ip = "0.0.0.0"; },
     "error 4 ip.address: This is an enabled client without an IP address"},
    {"Mask", [](auto& r) { r.ip.subnetMask = "255.0.255.0"; },
     "error 103 ip.subnetMask: 255.0.255.0 is no subnet mask: it has holes"},
    {"MaskOfZeros", [](auto& r) { r.ip.subnetMask = "000.0.0.0"; },
     "warning 206 ip.subnetMask: The mask 0.0.0.0 puts every address into the client's network"},
    {"OwnAddress", [](auto& r) { r.ip.ip = "192.168.1.0"; },
     "error 104 ip.address: 192.168.1.0 is the address of the network"},
    {"Broadcast", [](auto& r) { r.ip.ip = "192.168.1.255"; },
     "error 104 ip.address: 192.168.1.255 is the network's broadcast address"},
    {"Groups",
     [](auto& r) {
         r.ip.ip = "224.0.0.1";
         r.ip.serverIp = "240.0.0.1";
         r.ip.pvcs[0].ip = "239.255.255.255 ";
         r.ip.subnetMask = "128.0.0.0";  // all are in this network
     },
     "error 204 ip.address: 224.0.0.1 is the address of a group; "
     "error 204 ip.serverAddress: 240.0.0.1 is a reserved address; "
     "error 204 ip.pvcs[0]: 239.255.255.255 is the address of a group"},
    {"BelowTheGroups",
     [](auto& r) {
         r.ip.subnetMask = "128.0.0.0";
         r.ip.ip = "223.255.255.255";
     },
     ""},
    {"RateOfAnUnknownLink", [](auto& r) { r.lec[0].pvcs[0].rate = 1000; }, ""},
    {"RateOfASlowLink",
     [](auto& r) {
         r.linkKind = link25;
         r.lec[0].pvcs[0].rate = 2;
         r.lec[1].pvcs[0].rate = 3;
         r.ip.pvcs[0].rate = 2'000'000'000;
     },
     "warning 205 lec2.pvcs[0]: 3 MB/s are more than the link has: 2.90; "
     "warning 205 ip.pvcs[0]: 2000000000 MB/s are more than the link has: 2.90"},
    {"RateOfAFastLink",
     [](auto& r) {
         r.linkKind = link155Utp;
         r.lec[0].pvcs[0].rate = 16;
         r.lec[1].pvcs[0].rate = 17;
         r.ip.pvcs[0].rate = -1;
     },
     "warning 205 lec2.pvcs[0]: 17 MB/s are more than the link has: 16.95"},
    {"PointToPoint",
     [](auto& r) {
         r.ip.subnetMask = "255.255.255.254";
         r.ip.serverIp = "192.168.1.11";
         r.ip.pvcs[0].ip = "192.168.1.11 ";
     },
     ""},
    {"Elsewhere",
     [](auto& r) {
         r.ip.serverIp = "192.168.2.1";
         r.ip.pvcs[0].ip = "10.0.0.1 ";
     },
     "warning 105 ip.serverAddress: The ATMARP server 192.168.2.1 is not in the client's network; "
     "warning 105 ip.pvcs[0]: 10.0.0.1 is not in the client's network"},
    {"Servers",
     [](auto& r) {
         r.les[3] = r.les[0];
         r.les[3].clientFile = "/etc/atm/elan3";
         r.les[3].strictMtu = 1;
         r.les[3].mtuClass = 2;
         r.lec[1].elanName = "";
     },
     "warning 2 lec2.elanName: This is an enabled client without an ELAN name; "
     "error 109 les4.elanName: LES 1 serves the ELAN blue, too; "
     "error 110 lec1.mtu: LES 4 is strict about the MTU, and has another one; "
     "error 111 les4.clients[0]: 00:20:40:00:c1:01-00 is a client of LES 1, too"},
    {"ServerWithoutName", [](auto& r) { r.les[0].elanName = ""; },
     "warning 202 les1.elanName: This is an enabled server without an ELAN name"},
    {"Files",
     [](auto& r) {
         r.les[0].clientFile = "";
         r.lec[1].pvcFile = "/etc/atm/pvc0";
     },
     "error 113 les1.clients: The clients are not kept: there is no client table file; "
     "error 114 lec2.pvcFile: /etc/atm/pvc0 is the list file of LEC 1, too"},
};

}  // namespace

TEST(Rules, NameWhatCannotBeRight) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AdapterRecords records = working();
        c.spoil(records);
        EXPECT_EQ(text(CheckAdapter(records)), c.found);
    }
}

TEST(Rules, SayNothingOfWhatIsOff) {
    AtmDevices devices;  // everything as it is without a parameter file
    EXPECT_EQ(text(CheckAdapter(AdapterRecords(devices, 1))), "");
    AdapterRecords records = working();
    for (const Case& c : cases) c.spoil(records);
    for (AtmLEC& client : records.lec) client.enabled = 0;
    for (AtmLES& server : records.les) server.enabled = 0;
    records.ip.enabled = 0;
    records.sig.addressRegistration = 1;
    EXPECT_EQ(text(CheckAdapter(records)), "");
}

TEST(Rules, OfOneServiceEachRuleSpeaksOnce) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AdapterRecords records = working();
        c.spoil(records);
        std::map<std::pair<std::string, int>, std::string> first;
        for (const Finding& finding : CheckAdapter(records))
            first.try_emplace({finding.path.substr(0, finding.path.find('.')), finding.number},
                              finding.path + finding.message);
        for (const auto& [of, words] : first) {
            const auto findings = CheckService(records, of.first);
            const auto found = std::ranges::find(findings, of.second, &Finding::number);
            ASSERT_NE(found, findings.end()) << words;
            EXPECT_EQ(found->path + found->message, words);
        }
    }
    AdapterRecords records = working();
    for (AtmLEC& client : records.lec) client.pvcs.assign(1000, AtmBridgedPvc{});
    EXPECT_GE(CheckAdapter(records).size(), 4U * 1000);
    EXPECT_LE(CheckService(records, "lec2").size(), 4U);
    EXPECT_EQ(text(CheckService(records, "signalling")), "");
}
