// What a change says of a driver that does not do what it was told, or runs with what is in no file.
#include "administrator.h"
#include "platform/lock.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr const char* parameters = "/etc/atm/tvconf";

struct WithDriver : testing::Test {
    SampleRoot root;
    Simulator driver{{"--frozen", "--adapters", "1"}};
    Administrator user;

    ChangeOrder restart(bool lec, bool les) {
        user.configuration.driverRevision = "4.1";
        ChangeOrder order{.adapters = {0}, .before = user.before, .driver = true};
        order.changed[0].lec.set(0, lec);
        order.changed[0].les.set(0, les);
        return order;
    }
};

}  // namespace

TEST_F(WithDriver, AnAnswerThatBreaksOffIsNone) {
    driver.ctl("fault lec.start every short 8");
    user.lec(1).elanName = "other";
    AdapterChange change(user.configuration, restart(true, false));
    EXPECT_FALSE(change.run());
    EXPECT_THAT(change.result().driver,
                ElementsAre("LEC 1: no answer to the restart. What it runs with is unknown.",
                            "Nothing more was sent after a request without an answer."));
}

TEST_F(WithDriver, OfAServerThatWasOnlyStoppedNothingIsKept) {
    for (const char* name : {"one", "two"}) {
        user.mine.les[0][0].elanName = name;
        AdapterChange change(user.configuration, restart(false, true));
        EXPECT_FALSE(change.run());
        user.begin();
        const std::string sent = root.read("/var/lib/tarvolin/sent.json");
        EXPECT_EQ(sent.find("adapter1/les1") != sent.npos, std::string(name) == "one") << sent;
        driver.ctl("fault les.start every resp 5");
    }
}

// An editor renames LEC 1, too, while it is restarted.
struct LateConflict : WithDriver {
    std::optional<AdapterChange> change;

    LateConflict() {
        driver.ctl("fault lec.start every late 600");
        const std::string was = user.before.lec[0][0].elanName.str();
        user.lec(1).elanName = "mine";
        change.emplace(user.configuration, restart(true, false));
        std::thread editor([&] {
            std::this_thread::sleep_for(300ms);
            std::string text = root.read(parameters);
            text.replace(text.find(was, text.find("[LEC0")), was.size(), "theirs");
            root.write(parameters, text);
        });
        const std::optional<Question> question = change->run();
        editor.join();
        EXPECT_THAT(question ? question->text : "", HasSubstr("yours mine, in the file theirs"));
        driver.ctl("fault clear");
    }
    void expectNamed() {
        EXPECT_THAT(change->result().notes,
                    ElementsAre("The driver runs LEC 1 with settings that are not in the file."));
        EXPECT_THAT(root.read("/var/lib/tarvolin/sent.json"), HasSubstr("\"mine\""));
    }
};

TEST_F(LateConflict, WhatTheDriverRunsWhenTheUserGivesUpIsNamed) {
    platform::ConfigurationLock other;
    ASSERT_EQ(other.take("other", 1s), 0);
    change->answer(true);
    const std::optional<Question> question = change->run();
    ASSERT_TRUE(question);
    EXPECT_EQ(question->title, "Configuration Busy");
    change->answer(false);
    EXPECT_FALSE(change->run());
    expectNamed();
}

TEST_F(LateConflict, WhatTheDriverDoesNotGiveBackIsNamed) {
    driver.ctl("fault lec.start every resp 5");
    change->answer(false);
    EXPECT_FALSE(change->run());
    expectNamed();
    EXPECT_THAT(change->result().driver,
                testing::Contains("LEC 1: restart refused (5). It runs with its old settings."));
}
