#include "driver/channel.h"

#include "driver/dai_io.h"
#include "driver/requestblocks.h"
#include "tests/support/scripteddriver.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>

TEST(Channel, OpensOnceAndClosesWithItsOwner) {
    ScriptedDriver driver;
    {
        DriverChannel channel;
        EXPECT_FALSE(channel);
        EXPECT_TRUE(channel.open(O_RDWR));
        EXPECT_TRUE(channel.open(O_RDONLY)) << "in the other mode: the first one is closed";
        EXPECT_EQ(driver.closed(), std::vector{7});
        driver.failCall(1, EACCES);
        EXPECT_FALSE(channel.open(O_RDWR));
        EXPECT_EQ(errno, EACCES);
        EXPECT_FALSE(channel);
        { const OpenedChannel opened(channel, O_RDWR); }
        EXPECT_FALSE(channel);
        EXPECT_EQ(driver.closed(), (std::vector{7, 8, 9}));
        EXPECT_TRUE(channel.open(O_RDWR));
    }
    EXPECT_EQ(driver.closed(), (std::vector{7, 8, 9, 10}));
    EXPECT_EQ(driver.opened(),
              (std::vector<std::string>{"/dev/li 2", "/dev/li 0", "/dev/li 2", "/dev/li 2", "/dev/li 2"}));
}

TEST(Channel, CountsItsOwnTimeoutsAndNoOtherFailure) {
    ScriptedDriver driver;
    DriverChannel other;
    other.open(O_RDONLY);
    TimeoutWatch timeouts(driver.channel());
    const TimeoutWatch otherTimeouts(other);
    aalInfo query(driver.channel(), 0);
    const struct {
        Answer answer;
        bool timedOut;
    } cases[] = {{Answer(), false},
                 {Answer().resp(5), false},
                 {Answer().error(EIO), false},
                 {Answer().unanswered(), false},
                 {Answer().error(ETIME), true}};
    for (const auto& c : cases) {
        driver.expectAny() = c.answer;
        query.GetPackageRev();
        EXPECT_EQ(query.timedOut(), c.timedOut);
        EXPECT_EQ(timeouts.any(), c.timedOut);
    }
    EXPECT_EQ(driver.channel().timeouts(), 1U);
    EXPECT_FALSE(otherTimeouts.any());
    timeouts.restart();
    EXPECT_FALSE(timeouts.any());
}

TEST(Channel, CountsTheChangesThatTheDriverAccepted) {
    ScriptedDriver driver;
    DriverChannel& channel = driver.channel();
    lecsRequest lecs(channel, 0);
    driver.expectAny().resp(5);  // nothing ran that could be stopped
    driver.expectAny();
    driver.expectAny();
    lecs.enable(lecs_req());
    EXPECT_EQ(channel.acceptedChanges(), 2U);
    driver.expectAny();
    TraceRequest(channel).switchTrace(TraceRequest::ilmi, true);
    EXPECT_EQ(channel.acceptedChanges(), 3U);
    driver.expectAny().error(ETIME);
    lecs.go();
    driver.expectAny();
    aalInfo(channel, 0).GetPackageRev();
    channel.close();
    EXPECT_EQ(channel.acceptedChanges(), 3U) << "neither what failed nor a query, and not lost by closing";
}
