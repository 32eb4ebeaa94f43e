// One entry that two sides give to different lists: it never ends in both.
#include "change/merge.h"

namespace {

constexpr int first[] = {0};  // the adapters

// "1:ab 3:a": LES 1 has the clients a and b, LES 3 has a.
AtmDevices servers(std::string_view text) {
    AtmDevices devices;
    std::size_t server = 0;
    for (const char c : text)
        if (c >= '1' && c <= '8')
            server = static_cast<std::size_t>(c - '1');
        else if (c >= 'a' && c <= 'z')
            devices.les[0][server].clients.emplace_back(
                esiSelector::Bytes{0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(c)});
    return devices;
}

std::string text(const AtmDevices& devices) {
    std::string all;
    for (std::size_t m = 0; m < devices.les[0].size(); ++m) {
        const auto& clients = devices.les[0][m].clients;
        if (!clients.empty()) all += fmt::format("{}{}:", all.empty() ? "" : " ", m + 1);
        for (const esiSelector& client : clients) all += static_cast<char>(client.bytes()[6]);
    }
    return all;
}

}  // namespace

TEST(ListMoves, AnEntryIsInOneList) {
    const struct {
        const char *base, *mine, *theirs, *asked, *takingMine, *takingTheirs;
    } cases[] = {
        {"1:ab", "1:b 2:a", "1:b 3:a", "LES 1 @: yours moved to LES 2, in the file moved to LES 3", "1:b 2:a",
         "1:b 3:a"},
        {"1:ab", "1:b 2:a", "1:b", "LES 1 @: yours moved to LES 2, in the file removed", "1:b 2:a", "1:b"},
        {"1:ab", "1:b", "1:b 3:a", "LES 1 @: yours removed, in the file moved to LES 3", "1:b", "1:b 3:a"},
        {"1:ab", "1:b 2:a", "1:b 2:a", "", "1:b 2:a", "1:b 2:a"},
        {"1:ab", "1:b", "1:b", "", "1:b", "1:b"},
        {"1:ab", "1:b 2:a", "1:a 3:b", "", "2:a 3:b", "2:a 3:b"},
        {"1:ab", "1:b 2:a", "1:ab 3:a", "@: yours added to LES 2, in the file added to LES 3", "1:b 2:a",
         "1:b 3:a"},
        {"1:b", "1:b 2:a", "1:b 3:a", "@: yours added to LES 2, in the file added to LES 3", "1:b 2:a",
         "1:b 3:a"},
        // Another one of the same address was there before.
        {"1:a 2:a", "2:aa", "2:a 3:a", "LES 1 @: yours moved to LES 2, in the file moved to LES 3", "2:aa",
         "2:a 3:a"},
    };
    for (const auto& c : cases)
        for (const bool takingMine : {true, false})
            for (const bool readAgain : {true, false}) {  // as Setup does, while my lists wait to be saved
                SCOPED_TRACE(
                    fmt::format("{} | {} | {} {} {}", c.base, c.mine, c.theirs, takingMine, readAgain));
                AtmDevices base = servers(c.base), mine = servers(c.mine);
                const AtmDevices theirs = servers(c.theirs);
                if (readAgain) takeOver(0, base, mine, theirs);
                Decisions decisions;
                std::string asked;
                for (const Conflict& conflict :
                     mergeAdapters(first, base, mine, theirs, false, decisions).conflicts) {
                    asked += conflict.line;
                    decisions[conflict] = takingMine;
                }
                std::string expected = c.asked;
                if (const std::size_t at = expected.find('@'); at != expected.npos)
                    expected.replace(at, 1, "Client 00:00:00:00:00:00-61");
                EXPECT_EQ(asked, expected);
                const Merge merge = mergeAdapters(first, base, mine, theirs, false, decisions);
                EXPECT_TRUE(merge.conflicts.empty());
                EXPECT_EQ(text(merge.devices), takingMine ? c.takingMine : c.takingTheirs);
                EXPECT_EQ(merge.entriesGivenUp.empty(), takingMine || !*c.asked);
            }
}

// A VCI, also over clients and Classical IP.
TEST(ListMoves, AVciThatBothHaveAddedIsAskedAbout) {
    const auto with = [](auto& list) { list.emplace_back().vci = 300; };
    const AtmDevices base;
    AtmDevices mine, theirs;
    with(mine.lec[0][1].pvcs);
    with(theirs.ip1577[0].pvcs);
    const Merge merge = mergeAdapters(first, base, mine, theirs, true, {});
    ASSERT_EQ(merge.conflicts.size(), 1U);
    EXPECT_EQ(merge.conflicts[0].line,
              "PVC 0 / 300: yours added to LEC 2, in the file added to Classical IP");
    EXPECT_TRUE(merge.devices.lec[0][1].pvcs.empty());
    EXPECT_EQ(merge.devices.ip1577[0].pvcs.size(), 1U);
    EXPECT_TRUE(mergeAdapters(first, base, mine, theirs, true, {{merge.conflicts[0], true}})
                    .devices.ip1577[0]
                    .pvcs.empty());
}
