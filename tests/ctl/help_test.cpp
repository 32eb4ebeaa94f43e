#include "run.h"

#include <gmock/gmock.h>

TEST(Help, TellsTheWordsOfEveryCommand) {
    const Ran all = runTvctl("help");
    EXPECT_EQ(all.status, 0);
    const nlohmann::json list = runTvctl("help --json").json();
    EXPECT_GE(list["commands"].size(), 16U);
    for (const nlohmann::json& each : list["commands"]) {
        const std::string name = each["name"];
        EXPECT_THAT(all.out, testing::HasSubstr(name + ' '));
        EXPECT_THAT(runTvctl("help " + name).out, testing::HasSubstr("Usage: tvctl " + name));
        EXPECT_EQ(runTvctl("--timeout 3 " + name + " --help").out, runTvctl("help " + name).out);
    }
    EXPECT_THAT(runTvctl("help pvc").out, testing::HasSubstr("ADDRESS vci N [llc|null]"));
    EXPECT_THAT(runTvctl("help client").out,
                testing::AllOf(testing::HasSubstr("CLIENT"), testing::HasSubstr("--note")));
    EXPECT_EQ(runTvctl("--json set --help").out, runTvctl("help set --json").out);
    EXPECT_EQ(runTvctl("help nothing").status, 2);
}
