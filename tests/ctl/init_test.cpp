// The parameter file of a first start.
#include "config/driverpdf.h"
#include "config/newparameters.h"
#include "platform/user.h"
#include "run.h"
#include "tests/support/logsocket.h"
#include "tests/support/temproot.h"

#include <filesystem>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/holder.h"  // after it

namespace {

constexpr const char* file = PdfEdit::parameterFile;

struct Init : testing::Test {
    TempRoot root;

    Init() { platform::pretendSuperUser(true); }
    ~Init() override { platform::pretendSuperUser({}); }
};

}  // namespace

TEST_F(Init, EveryAdapterForEveryReader) {
    const LogSocket log(root);
    std::filesystem::remove(root.at("/etc/atm"));
    const mode_t mask = ::umask(077);
    const Ran ran = runTvctl("init");
    ::umask(mask);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "/etc/atm/tvconf\n");
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(log.takeLines(),
                testing::ElementsAre(testing::StartsWith("change=none created=/etc/atm/tvconf ")));
    struct stat status {};
    ASSERT_EQ(::stat(root.at(file).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);

    const Ran shown = runTvctl("show");
    for (int adapter = 1; adapter <= 4; ++adapter)
        for (const std::string& line :
             {fmt::format("adapter{}/signalling.uniRevision = 3.1\n", adapter),
              fmt::format("adapter{}/lec4.pvcFile = /etc/atm/pvcconf{}.3\n", adapter, adapter - 1),
              fmt::format("adapter{}/les8.clientFile = /etc/atm/elan{}.7\n", adapter, adapter - 1),
              fmt::format("adapter{}/ip.pvcFile = /etc/atm/pvcconf{}.32\n", adapter, adapter - 1)})
            EXPECT_THAT(shown.out, testing::HasSubstr(line));
}

TEST_F(Init, InJson) {
    EXPECT_EQ(runTvctl("init --json").json(),
              nlohmann::json::parse(R"({"format": 1, "file": "/etc/atm/tvconf"})"));
}

TEST_F(Init, WhyNot) {
    const auto expect = [&](int status, const std::string& err) {
        const Ran ran = runTvctl("init");
        EXPECT_EQ(ran.status, status);
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(ran.err, err);
    };
    {
        const Holder other;
        expect(6, fmt::format("tvctl: the configuration is being changed by {}\n", other.name()));
    }
    platform::pretendSuperUser(false);
    expect(77, "tvctl: only root may do this\n");
    platform::pretendSuperUser(true);
    EXPECT_FALSE(root.exists(file));
    std::filesystem::create_symlink("../../missing/tvconf", root.at(file));
    EXPECT_EQ(runTvctl("init").status, 5);  // its directory is not made
    std::filesystem::remove(root.at(file));
    root.write(file, "");
    expect(9, "tvctl: there is /etc/atm/tvconf already\n");
    EXPECT_EQ(root.read(file), "");
}
