// How the changes that two sides made to one list come together.
#include "change/listmerge.h"

namespace {

// "5a1 6b": VCI 5 of address a at 1 MB/s, VCI 6 of address b at 0.
std::vector<AtmRoutedPvc> list(const std::string& text) {
    std::vector<AtmRoutedPvc> entries;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        AtmRoutedPvc pvc;
        pvc.vci = static_cast<std::uint16_t>(word[0] - '0');
        pvc.ip = ipAddress({10, 0, 0, static_cast<std::uint8_t>(word[1])});
        pvc.rate = word.size() > 2 ? word[2] - '0' : 0;
        entries.push_back(pvc);
    }
    return entries;
}

std::string word(const std::optional<AtmRoutedPvc>& pvc) {
    if (!pvc) return "-";
    return fmt::format("{}{}{}", pvc->vci, static_cast<char>(pvc->ip.bytes()[3]),
                       pvc->rate ? std::to_string(pvc->rate) : "");
}

std::string text(const std::vector<AtmRoutedPvc>& entries) {
    std::string all;
    for (const AtmRoutedPvc& pvc : entries) all += (all.empty() ? "" : " ") + word(pvc);
    return all;
}

}  // namespace

TEST(MergeLists, ChangesOfBothSides) {
    const struct {
        const char *base, *mine, *theirs;
        const char* asked;  // entry, what became of it here and there
        const char *takingMine, *takingTheirs;
    } cases[] = {
        {"1a 2b", "1a 2b 3c", "1a", "", "1a 3c", "1a 3c"},
        {"1a 2b", "1a1 2b", "1a 2b2", "", "1a1 2b2", "1a1 2b2"},
        {"1a", "1a1", "1a2", "1a 1a1 1a2; ", "1a1", "1a2"},
        {"1a", "1a1", "", "1a 1a1 -; ", "1a1", ""},
        {"1a", "", "1a2", "1a - 1a2; ", "", "1a2"},
        {"", "1a", "1b", "1a 1a 1b; ", "1a", "1b"},
        // Which of two of one VCI was changed, their addresses tell.
        {"5a 5b", "5b1", "5b", "", "5b1", "5b1"},
        {"5a 5b", "5b1", "5a", "5b 5b1 -; ", "5b1", ""},
        // What both have added, or both removed, is that once.
        {"1a", "7a", "1a 7a", "", "7a", "7a"},
        {"3a1", "3a", "3a1 3a", "", "3a", "3a"},
        {"", "3a1 4b", "4b", "", "4b 3a1", "4b 3a1"},
        {"2a 2a", "2a", "2a 3c", "", "2a 3c", "2a 3c"},
        // A changed VCI is a change, too.
        {"1a", "7a", "", "1a 7a -; ", "7a", ""},
        {"1a", "7a", "8a", "1a 7a 8a; ", "7a", "8a"},
        {"1a", "7a", "1a2", "1a 7a 1a2; ", "7a", "1a2"},
        {"1a", "7a", "1a 2b", "", "7a 2b", "7a 2b"},
    };
    for (const auto& c : cases)
        for (const bool mine : {true, false}) {
            std::string asked;
            const auto merged = mergeLists<AtmRoutedPvc>(
                list(c.base), list(c.mine), list(c.theirs), [&](const EntryConflict<AtmRoutedPvc>& conflict) {
                    asked += fmt::format("{} {} {}; ", word(conflict.entry), word(conflict.mine),
                                         word(conflict.theirs));
                    return mine;
                });
            EXPECT_EQ(asked, c.asked) << c.base << " | " << c.mine << " | " << c.theirs;
            EXPECT_EQ(text(merged), mine ? c.takingMine : c.takingTheirs)
                << c.base << " | " << c.mine << " | " << c.theirs;
        }
}
