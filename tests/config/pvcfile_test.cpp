// The text form of the list files.
#include "config/pvcfile.h"

#include "config/listform.h"
#include "fixture.h"
#include "tests/support/logcapture.h"

namespace {

std::vector<AtmRoutedPvc> routed(std::string_view text) {
    std::vector<AtmRoutedPvc> list;
    parseList(text, "list", list);
    return list;
}

}  // namespace

TEST(PvcFile, ABridgedRecordIsWrittenAsItIsRead) {
    AtmBridgedPvc bridged{macAddress({0, 0xa0, 0x3e, 0, 0, 0x0a}), 40000, 1, 1, -5}, again;
    std::stringstream stream;
    stream << bridged;
    EXPECT_THAT(stream.str(), testing::HasSubstr("\tVC    =-25536\t#VC index\n\tAddr  =00a03e00000a\t#"));
    stream >> again;
    EXPECT_EQ(again, bridged);
}

TEST(PvcFile, WhatIsTakenFromOddText) {
    const std::string rest = "\tEncap =1\n\tBcast =0\n\tRate  =9\n]\n",
                      first = "[PVC\nVC=1\nAddr=10.0.0.1\n" + rest;
    const std::string malformed = "Malformed Address In - list Record 1\n",
                      beyond = "VCI Beyond 16 Bits In - list Record 1 Value ";
    const auto vci = [](const std::string& text) { return "[PVC\nVC=" + text + "\nAddr=1.2.3.4\n\n\n\n"; };
    const struct {
        std::string text;
        std::vector<int> vcis, rates;
        std::string logged = "";
    } cases[] = {
        {"", {}, {}},
        {"# [PVC\n\n" + first, {1}, {9}},
        {first + "[PVC x\nVC=2\nAddr=10.0.0.2\nEncap=1\nBcast=0\n]\n",
         {1, 2},
         {9, 9}},                                     // no rate: the one before
        {first.substr(0, first.size() - 4), {}, {}},  // ends in the fifth line
        {first.substr(0, first.size() - 2), {1}, {9}},
        {"[PVC\nRate=3\nVC 5\nVC=junk\nEncap=\n#VC=4\n" + first, {0, 1}, {3, 9}},
        {"[PVC\nVC=99999999999\nRate=-99999999999\nAddr=1.2.3.4\n\n\n",
         {65535},
         {-2147483647 - 1},
         beyond + "99999999999\n"},
        {"[PVC\nVC=7" + std::string(90, ' ') + "Rate=1\n\n\n\n\n", {7}, {0}},  // beyond 79 characters
        {"[PVC\nAddr=1.2.3.400\n\n\n\n\n", {0}, {0}, malformed},
        {"[PVC\nAddr=1.2.3\n\n\n\n\n", {0}, {0}, malformed},
        {vci("65535") + vci("-32768"), {65535, 32768}, {0, 0}},
        {vci("70000 #x"), {4464}, {0}, beyond + "70000\n"},
        {vci("4294967396"), {65535}, {0}, beyond + "4294967396\n"},
        {vci("-32769"), {32767}, {0}, beyond + "-32769\n"},
    };
    for (const auto& c : cases) {
        const LogCapture log;
        const auto list = routed(c.text);
        std::vector<int> vcis, rates;
        for (const AtmRoutedPvc& pvc : list) vcis.push_back(pvc.vci), rates.push_back(pvc.rate);
        EXPECT_EQ(vcis, c.vcis) << c.text;
        EXPECT_EQ(rates, c.rates) << c.text;
        EXPECT_EQ(log.text, c.logged);
    }
    const LogCapture log;
    std::vector<esiSelector> clients;
    parseList("00a03e000001/00\n\n 00a03e00000\n2x01 00a03e000003", "list", clients);
    EXPECT_EQ(clients.size(), 2U);
    EXPECT_EQ(log.text, "Malformed Address In - list Record 2\n");
}

TEST(PvcFile, TextsOfLists) {
    const std::vector<esiSelector> clients(2, esiSelector({0, 0xa0, 0x3e, 0, 0, 1, 0}));
    EXPECT_EQ(listText(clients), "00a03e000001/00\n00a03e000001/00\n");
    EXPECT_EQ(listText(routed(routedText)), std::string(routedText).substr(9) + "\n");
}

TEST(PvcFile, WhatIsAListOfItsKind) {
    const std::string record = "[PVC\nVC=1\nAddr=10.0.0.1\nEncap=1\nBcast=0\nRate=7\n]\n",
                      written = listText(routed(record));
    const auto with = [&](const std::string& line, const std::string& instead) {
        return std::string(record).replace(record.find(line), line.size(), instead);
    };
    enum Kind { routedPvcs, bridgedPvcs, clients };
    const struct {
        Kind kind;
        std::string text;
        bool isList, hasEntry;
        std::string dropped = "";
    } cases[] = {
        {routedPvcs, "", true, false},
        {routedPvcs, "# nothing yet\n\n", true, false, "a comment"},
        {routedPvcs, "\n \t\n", true, false},
        {routedPvcs, written + written, true, true},
        {routedPvcs, record, true, true},
        {bridgedPvcs, record, false, true},
        {routedPvcs, bridgedText, false, true},
        {routedPvcs, adapterText(0), false, false, "a comment"},
        {routedPvcs, clientText, false, false, "a line beside its records"},
        {routedPvcs, "root:x:0:0:root:/root:/bin/sh\n", false, false, "a line beside its records"},
        {routedPvcs, written + "# leased\n", true, true, "a comment"},
        {routedPvcs, "x\n" + written, true, true, "a line beside its records"},
        {routedPvcs, with("Addr=10.0.0.1", "Addr=10.0.0.1 # the router"), true, true, "a comment"},
        {routedPvcs, with("Encap=1", "Qos=1"), true, true, "a line that is no value of a record"},
        {routedPvcs, with("[PVC", "[PVCs"), true, true, "text beside its records"},
        {routedPvcs, with("[PVC", "[PVC # lab"), true, true, "a comment"},
        {routedPvcs, with("Rate=7", "Rate=7 Mbit"), true, true, "text after a value"},
        {routedPvcs, with("VC=1", "VC=1 #" + std::string(90, 'x')), true, true, "a comment"},
        {routedPvcs, with("VC=1", "VC=70077"), true, true,
         "a value in record 1 that is no number of its kind"},
        {routedPvcs, with("Rate=7", "Rate=7k"), true, true,
         "a value in record 1 that is no number of its kind"},
        {routedPvcs, "[PVC\nVC=-25536\nAddr=bridge7\nEncap=1\nBcast=0\nRate=7\n]\n", true, true,
         "a value in record 1 that is no address of its kind"},
        {routedPvcs, with("Encap=1", "VC=2"), true, true, "a value in record 1 that is there twice"},
        {routedPvcs, written + "[PVC\nVC=1\n", true, true, "a last record that is cut"},
        {routedPvcs, "[PVC\nVC=1\n", true, false, "a last record that is cut"},
        {clients, clientText, true, true},
        {clients, "00a03e000001/00 00a03e000002/01", true, true},
        {clients, "00a03e0000 01/00", true, true},
        {clients, "# none\n", true, false, "a comment"},
        {clients, "", true, false},
        {clients, std::string(clientText) + "00a03e00", true, true, "a last client that is cut"},
        // Text among clients makes others of them.
        {clients, "# my list\n" + std::string(clientText), false, true},
        {clients, "00a03e000001/00 # printer\n" + std::string(clientText), false, true},
        {clients, record, false, true},
        {clients, "00a03e000001\n", false, false},
        {routedPvcs, "# lab\n" + record + "[PVC\nVC=1\nAddr=x\nEncap=1\nBcast=0\nRate=7\n]\n", true, true,
         "a comment; a value in record 2 that is no address of its kind"},
    };
    for (const auto& c : cases) {
        const ListForm form = c.kind == routedPvcs    ? listForm(c.text, std::vector<AtmRoutedPvc>())
                              : c.kind == bridgedPvcs ? listForm(c.text, std::vector<AtmBridgedPvc>())
                                                      : listForm(c.text, std::vector<esiSelector>());
        EXPECT_EQ(form.isList, c.isList) << c.text;
        EXPECT_EQ(form.hasEntry, c.hasEntry) << c.text;
        if (c.isList) {
            EXPECT_EQ(fmt::format("{}", fmt::join(form.dropped, "; ")), c.dropped) << c.text;
        }
    }
    for (const char* name : {"/etc/atm/x", "/etc/atm/lists/x", "/etc/atm/../atm/./x"})
        EXPECT_FALSE(isOutside(name)) << name;
    for (const char* name :
         {"", "x", "/etc/atm", "/etc/atm/", "/etc/atmx", "/etc/atm/../shadow", "etc/atm/x"})
        EXPECT_TRUE(isOutside(name)) << name;
}
