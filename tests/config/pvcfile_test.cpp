// The text form of the list files.
#include "config/pvcfile.h"

#include "fixture.h"
#include "tests/support/failingfiles.h"
#include "tests/support/logcapture.h"
#include "tests/support/temproot.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <sstream>

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
    const auto vci = [](std::string text) { return "[PVC\nVC=" + text + "\nAddr=1.2.3.4\n\n\n\n"; };
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

TEST(PvcFile, FilesAreWrittenToTheDiskAndEmptyListsRemoveThem) {
    const TempRoot root;
    const std::vector<esiSelector> clients(2, esiSelector({0, 0xa0, 0x3e, 0, 0, 1, 0}));
    FailingFiles files;
    EXPECT_EQ(writeListFile("/etc/atm/c", clients), 0);
    EXPECT_EQ(root.read("/etc/atm/c"), "00a03e000001/00\n00a03e000001/00\n");
    EXPECT_EQ(files.count(FileCall::sync), 2);  // the file and, being new, its directory
    EXPECT_EQ(writeListFile("/etc/atm/c", routed(routedText)), 0);
    EXPECT_EQ(root.read("/etc/atm/c"), std::string(routedText).substr(9) + "\n");
    // A failure is reported. The file is written in place: from the truncation on the old list is lost.
    const std::string before = root.read("/etc/atm/c"), after = "00a03e000001/00\n00a03e000001/00\n";
    const struct {
        FileCall kind;
        std::string content;
    } failures[] = {{FileCall::open, before},
                    {FileCall::truncate, before},
                    {FileCall::write, ""},
                    {FileCall::sync, after},
                    {FileCall::close, after}};
    for (const auto& failure : failures) {
        root.write("/etc/atm/c", before);
        files.failAt(1, ENOSPC, failure.kind);
        EXPECT_EQ(writeListFile("/etc/atm/c", clients), ENOSPC) << static_cast<int>(failure.kind);
        EXPECT_EQ(root.read("/etc/atm/c"), failure.content) << static_cast<int>(failure.kind);
    }
    EXPECT_EQ(writeListFile("/etc/atm", clients), EISDIR);
    EXPECT_EQ(writeListFile("/etc/atm/c", std::vector<esiSelector>{}), 0);
    EXPECT_FALSE(root.exists("/etc/atm/c"));
    EXPECT_EQ(writeListFile("/etc/atm/c", std::vector<esiSelector>{}), 0);
    std::vector<esiSelector> list = clients;
    EXPECT_EQ(readListFile("/etc/atm/c", list), 0);
    EXPECT_TRUE(list.empty());
}
