// One ELAN client that two sides move: it never ends on two servers, nor on none that either has chosen.
#include "change/merge.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace {

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

TEST(MovedClients, StayOnOneServer) {
    const struct {
        const char *base, *mine, *theirs, *asked, *takingMine, *takingTheirs;
    } cases[] = {
        {"1:ab", "1:b 2:a", "1:b 3:a", "yours moved to LES 2, in the file moved to LES 3", "1:b 2:a",
         "1:b 3:a"},
        {"1:ab", "1:b 2:a", "1:b", "yours moved to LES 2, in the file removed", "1:b 2:a", "1:b"},
        {"1:ab", "1:b", "1:b 3:a", "yours removed, in the file moved to LES 3", "1:b", "1:b 3:a"},
        {"1:ab", "1:b 2:a", "1:b 2:a", "", "1:b 2:a", "1:b 2:a"},
        {"1:ab", "1:b", "1:b", "", "1:b", "1:b"},
        {"1:ab", "1:b 2:a", "1:a 3:b", "", "2:a 3:b", "2:a 3:b"},
        {"1:ab", "1:b 2:a", "1:ab 3:a", "", "1:b 2:a 3:a", "1:b 2:a 3:a"},
        // Another one of the same address was there before.
        {"1:a 2:a", "2:aa", "2:a 3:a", "yours moved to LES 2, in the file moved to LES 3", "2:aa", "2:a 3:a"},
    };
    for (const auto& c : cases)
        for (const bool mine : {true, false})
            for (const bool settings : {true, false}) {
                SCOPED_TRACE(fmt::format("{} | {} | {} {}", c.base, c.mine, c.theirs, mine));
                Decisions decisions;
                Merge merge =
                    mergeAdapter(0, servers(c.base), servers(c.mine), servers(c.theirs), settings, decisions);
                std::string asked;
                for (const Conflict& conflict : merge.conflicts) {
                    asked += conflict.line;
                    decisions[conflict] = mine;
                }
                EXPECT_EQ(asked,
                          *c.asked ? fmt::format("LES 1 Client 00:00:00:00:00:00-61: {}", c.asked) : "");
                merge =
                    mergeAdapter(0, servers(c.base), servers(c.mine), servers(c.theirs), settings, decisions);
                EXPECT_TRUE(merge.conflicts.empty());
                EXPECT_EQ(text(merge.devices), mine ? c.takingMine : c.takingTheirs);
                EXPECT_EQ(merge.entriesGivenUp.empty(), mine || !*c.asked);
            }
}
