#include "platform/syslog.h"
#include "tests/support/logcapture.h"
#include "tests/support/logsocket.h"

using platform::LogLevel;
using platform::sendSyslog;
using testing::HasSubstr;

TEST(Syslog, OneDatagramALine) {
    const TempRoot root;
    const LogSocket daemon(root);
    EXPECT_TRUE(sendSyslog(LogLevel::notice, "change=0042 old=\"a\nb\x7f\""));
    EXPECT_TRUE(sendSyslog(LogLevel::warning, std::string(3000, 'x')));
    const std::vector<std::string> got = daemon.take();
    ASSERT_EQ(got.size(), 2U);
    const std::string pid = fmt::format(" tarvolin[{}]: ", ::getpid());
    EXPECT_THAT(got[0],
                testing::MatchesRegex("<85>[A-Z][a-z]. [ 0-9][0-9] ..:..:.. tarvolin\\[[0-9]*\\]: .*"));
    EXPECT_TRUE(got[0].ends_with(pid + "change=0042 old=\"a?b?\"")) << got[0];
    EXPECT_TRUE(got[1].starts_with("<84>"));
    EXPECT_TRUE(got[1].ends_with(pid + std::string(2000, 'x')));
}

TEST(Syslog, ALostLineIsSaidAndCountedAndAStoppedDaemonIsWaitedForOnce) {
    const TempRoot root;
    LogCapture log;
    const unsigned long before = platform::lostSyslogLines();
    EXPECT_FALSE(sendSyslog(LogLevel::notice, "nobody there"));
    EXPECT_EQ(log.take(),
              fmt::format("syslog: No such file or directory, line lost ({}): nobody there\n", before + 1));

    const LogSocket daemon(root);
    int taken = 0;
    const auto start = std::chrono::steady_clock::now();
    while (taken < 10000 && sendSyslog(LogLevel::notice, "unread")) ++taken;
    for (int i = 0; i < 20; ++i) EXPECT_FALSE(sendSyslog(LogLevel::notice, "unread"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(platform::lostSyslogLines(), before + 22);
    EXPECT_THAT(log.take(), HasSubstr(fmt::format("line lost ({}): unread\n", before + 22)));

    EXPECT_EQ(daemon.take().size(), static_cast<std::size_t>(taken));
    EXPECT_TRUE(sendSyslog(LogLevel::notice, "read again"));
    EXPECT_EQ(daemon.takeLines(), std::vector<std::string>{"read again"});

    ::setenv("TARVOLIN_ROOT", ("/tmp/" + std::string(200, 'r')).c_str(), 1);
    EXPECT_FALSE(sendSyslog(LogLevel::notice, "too far"));
    EXPECT_THAT(log.take(), HasSubstr("File name too long"));
}
