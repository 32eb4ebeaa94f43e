// What a save costs: how often it brings something to the disk, and how often it renames.
#include "change/adapterchange.h"
#include "change/history.h"
#include "tests/support/failingfiles.h"
#include "tests/support/simulator.h"

namespace {

struct Cost {
    int syncs, renames;
    bool operator==(const Cost&) const = default;
};

}  // namespace

// With a driver: what it takes is kept in a file of its own. With a full history, whose oldest entry goes.
TEST(Calls, OfOneOk) {
    const SampleRoot root;
    const Simulator simulator;
    AtmDevices mine;
    Configuration configuration("tarvolin", mine);
    ASSERT_TRUE(configuration.read());
    for (std::size_t i = 0; i < keptEntries; ++i) {
        HistoryEntry entry;
        entry.begin({});
        entry.finish({});
    }
    const auto ok = [&](bool setting, bool lists) {
        ChangeOrder order{.adapters = {0}, .before = mine, .driver = true};
        order.changed[0].lec.set(0, setting);
        if (setting) ++mine.lec[0][0].l3Mtu;
        if (lists) {
            for (AtmLEC& lec : mine.lec[0]) lec.pvcs.emplace_back().vci = 400;
            mine.ip1577[0].pvcs.emplace_back().vci = 400;
        }
        FailingFiles files;
        AdapterChange change(configuration, std::move(order));
        EXPECT_FALSE(change.run());
        EXPECT_EQ(change.result().wrote, setting || lists);
        EXPECT_EQ(change.result().tookAny(), setting);
        EXPECT_THAT(change.result().driver, testing::IsEmpty());
        return Cost{files.count(FileCall::sync), files.count(FileCall::rename)};
    };
    EXPECT_EQ(ok(false, false), (Cost{2, 1}));  // the copy, its directory
    EXPECT_EQ(ok(true, false), (Cost{3, 3}));   // and the history's manifest
    EXPECT_EQ(ok(true, true), (Cost{10, 8}));   // five copies more, the record, the directory a second time
}
