// What others, and the system, can do to a change: how it ends, and with which code in JSON. Everything else
// that can be wrong with a command stands in changing_test.cpp.
#include "platform/user.h"
#include "run.h"
#include "tests/support/simulator.h"
#include "tvctl.h"

#include <fcntl.h>
#include <future>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr const char *parameters = "/etc/atm/tvconf", *lockFile = "/run/tarvolin.lock";

// No file of this process, or of those that it starts, grows beyond so many bytes.
struct SmallFiles {
    rlimit before{};

    explicit SmallFiles(rlim_t largest) {
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit now{largest, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &now);
    }
    ~SmallFiles() { ::setrlimit(RLIMIT_FSIZE, &before); }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;
};

// A script that holds the lock without saying who it is.
struct Script {
    int lock;

    explicit Script(const TempRoot& root) {
        root.write(lockFile, "");
        lock = ::open(root.at(lockFile).c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_EQ(::flock(lock, LOCK_EX), 0);
    }
    ~Script() { ::close(lock); }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;
};

struct Interrupted : testing::Test {
    SampleRoot root;

    // Changes the name of the first client, which fails with this status.
    void expectFailure(int status, const std::string& message, const std::string& where = "") {
        const Said said = tvctl("--json set adapter1/lec1.elanName=mine");
        EXPECT_EQ(said.status, status);
        EXPECT_EQ(said.err, "tvctl: " + message + '\n');
        nlohmann::json error{{"code", status}, {"message", message}};
        if (!where.empty()) error["where"] = where;
        EXPECT_EQ(nlohmann::json::parse(said.out), (nlohmann::json{{"format", 1}, {"error", error}}));
        EXPECT_FALSE(root.exists("/var/lib/tarvolin/history/0001"));
        EXPECT_EQ(root.temporaryCopies(), 0);
    }
};

}  // namespace

TEST_F(Interrupted, ByAFileThatMayNotGrow) {
    const auto before = root.files("/etc/atm");
    const SmallFiles limit(4096);
    expectFailure(5, "/etc/atm/tvconf: File too large", parameters);
    EXPECT_EQ(root.files("/etc/atm"), before);
}

TEST_F(Interrupted, ByAScriptThatHoldsTheLock) {
    const auto before = root.files("/etc/atm");
    const Script script(root);
    // What is wrong with the command itself comes first. Each waits for the lock.
    const auto statusOf = [](const char* words) {
        return std::async(std::launch::async, [words] { return tvctl(words).status; });
    };
    auto value = statusOf("set adapter1/lec1.mtu=7"), entry = statusOf("pvc delete adapter1/lec1 999"),
         change = statusOf("revert 99");
    EXPECT_EQ(value.get(), 9);
    EXPECT_EQ(entry.get(), 10);
    EXPECT_EQ(change.get(), 10);
    expectFailure(6, "the configuration is being changed by another program");
    EXPECT_EQ(root.files("/etc/atm"), before);
}

TEST_F(Interrupted, BySomebodyWhoChangesTheSame) {
    const Simulator driver;
    driver.ctl("fault lec.start nth 1 late 1000");
    std::thread other([&] {
        while (driver.ctl("log all").find("lec.start") == std::string::npos)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        root.edit(parameters, "= engineering", "= theirs");
    });
    expectFailure(7, "somebody else has changed the same meanwhile; "
                     "the driver has the settings of the files again");
    other.join();
    EXPECT_EQ(tvctl("get adapter1/lec1.elanName").out, "theirs\n");
    EXPECT_EQ(tvctl("diff").status, 0) << "what was edited by hand is unknown beside";
}

// What the driver has taken by then is taken back.
TEST_F(Interrupted, ByAFileThatMayNotGrowAfterTheDriverWasTold) {
    const Simulator driver;
    const auto before = root.files("/etc/atm");
    {
        const SmallFiles limit(256);
        const Said set = tvctl("set adapter1/lec1.elanName=mine");
        EXPECT_EQ(set.status, 5);
        EXPECT_THAT(set.err, testing::HasSubstr("the driver has the settings of the files again"));
        EXPECT_EQ(tvctl("pvc add adapter1/lec1 8:0:20:1:2:3 vci 300").status, 5);
    }
    {
        const SmallFiles limit(4096);  // of the configuration alone
        EXPECT_THAT(tvctl("set adapter1/lec1.elanName=mine --confirm 60").err,
                    testing::HasSubstr("the driver has the settings of the files again"));
        EXPECT_FALSE(root.exists("/var/lib/tarvolin/pending.json"));
    }
    EXPECT_EQ(root.files("/etc/atm"), before);
    EXPECT_EQ(tvctl("diff").out, "");
}

TEST_F(Interrupted, ByWhoItIsNotPermittedTo) {
    platform::pretendSuperUser(false);
    const Ran ran = runTvctl("--json set adapter1/lec1.elanName=mine");
    platform::pretendSuperUser({});
    EXPECT_EQ(ran.status, 77);
    EXPECT_EQ(ran.json()["error"]["code"], 77);
    platform::pretendSuperUser(false);
    EXPECT_EQ(runTvctl("set adapter9/lec1.mtu=1516").status, 77);
    EXPECT_EQ(runTvctl("set adapter9/lec1.foo=1516").status, 2);
    platform::pretendSuperUser({});
}
