// Switching the driver's traces.
#include "platform/user.h"
#include "run.h"
#include "tests/support/simulator.h"

#include <gmock/gmock.h>
#include <optional>

namespace {

struct Trace : testing::Test {
    SampleRoot root;

    Trace() { platform::pretendSuperUser(true); }
    ~Trace() override { platform::pretendSuperUser({}); }
};

}  // namespace

TEST_F(Trace, EachSwitchAlone) {
    const Simulator driver;
    for (const std::string name : {"api", "signalling", "ilmi"})
        for (const std::string state : {"on", "off"}) {
            SCOPED_TRACE(name + state);
            const Ran ran = runTvctl("trace " + name + " " + state);
            EXPECT_EQ(ran.status, 0);
            EXPECT_EQ(ran.out, "request DaiSigDbgTrace " + name + "\n");
            EXPECT_EQ(ran.err, "");
            for (const std::string other : {"api", "signalling", "ilmi"})
                EXPECT_THAT(driver.ctl("dump"),
                            testing::HasSubstr("state trace " + other +
                                               (other == name && state == "on" ? " 1" : " 0")));
        }
    EXPECT_EQ(runTvctl("--json trace ilmi on").json(), nlohmann::json::parse(R"({"format": 1,
        "requests": [{"name": "DaiSigDbgTrace", "where": "ilmi", "resp": 0}],
        "driver": true, "result": "ok"})"));
}

TEST_F(Trace, WhyNot) {
    const struct {
        const char* fault;  // of the driver; null: there is none
        bool root;
        const char* line;
        int status;
        const char *out, *err;
    } cases[] = {
        {"", true, "trace atm on", 2, "", "tvctl: TRACE: atm not in {api,signalling,ilmi}\n"},
        {"", true, "trace api maybe", 2, "", "tvctl: STATE: maybe not in {on,off}\n"},
        {"", true, "trace api", 2, "", "tvctl: STATE is required\n"},
        {nullptr, false, "trace api on", 77, "", "tvctl: only root may do this\n"},
        {nullptr, true, "trace api on", 8, "", "tvctl: there is no driver\n"},
        {"fault trace.set every resp 5", true, "trace api on", 4, "request DaiSigDbgTrace api refused 5\n",
         "tvctl: the driver refused to switch the trace (5)\n"},
        {"fault trace.set every silent", true, "--timeout 0.2 trace api on", 3,
         "request DaiSigDbgTrace api no answer\n",
         "tvctl: the driver did not answer: whether the trace is switched is unknown\n"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.err);
        std::optional<Simulator> driver;
        if (one.fault) driver.emplace();
        if (one.fault && *one.fault) driver->ctl(one.fault);
        platform::pretendSuperUser(one.root);
        const Ran ran = runTvctl(one.line);
        EXPECT_EQ(ran.status, one.status);
        EXPECT_EQ(ran.out, one.out);
        EXPECT_EQ(ran.err, one.err);
    }
}
