#include "driver/channel.h"

#include "driver/dai_io.h"
#include "driver/requestblocks.h"
#include "tests/support/scripteddriver.h"

#include <ctime>
#include <fcntl.h>

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

TEST(Channel, TellsARefusalFromAMissingAnswer) {
    ScriptedDriver driver;
    DriverChannel other;
    other.open(O_RDONLY);
    AnswerWatch answers(driver.channel());
    const AnswerWatch otherAnswers(other);
    aalInfo query(driver.channel(), 0);
    const struct {
        Answer answer;
        Outcome outcome;
        bool answered;
    } cases[] = {{Answer(), Outcome::success, true},
                 {Answer().resp(5), Outcome::refused, true},
                 {Answer().unanswered(), Outcome::refused, true},
                 {Answer().error(EIO), Outcome::refused, true},
                 {Answer().error(EACCES), Outcome::refused, true},
                 {Answer().error(ETIME), Outcome::silent, false},
                 {Answer().error(EPROTO), Outcome::garbled, false},
                 {Answer().error(EINTR), Outcome::interrupted, false},
                 {Answer().error(ENODEV), Outcome::absent, false},
                 {Answer().error(ENXIO), Outcome::absent, false}};
    for (const auto& c : cases) {
        driver.expectAny() = c.answer;
        answers.restart();
        query.GetPackageRev();
        EXPECT_EQ(query.outcome(), c.outcome);
        EXPECT_EQ(query.answered(), c.answered);
        EXPECT_EQ(answers.missed(), !c.answered);
        EXPECT_EQ(driver.channel().silentSince() != 0, !c.answered);
    }
    EXPECT_FALSE(otherAnswers.missed());
}

TEST(Channel, IsSilentSinceTheFirstRequestWithoutAnAnswer) {
    ScriptedDriver driver;
    aalInfo query(driver.channel(), 0);
    const std::time_t begin = std::time(nullptr);
    driver.expectAny().error(ETIME);
    query.GetPackageRev();
    const std::time_t since = driver.channel().silentSince();
    EXPECT_GE(since, begin);
    EXPECT_LE(since, begin + 1);
    while (std::time(nullptr) == since) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    driver.expectAny().error(ENXIO);
    query.GetPackageRev();
    EXPECT_EQ(driver.channel().silentSince(), since);
    driver.expectAny().resp(5);
    query.GetPackageRev();
    EXPECT_EQ(driver.channel().silentSince(), 0) << "a refusal is an answer";
    driver.failCall(1, ENOENT);
    EXPECT_FALSE(driver.channel().open(O_RDONLY));
    EXPECT_GT(driver.channel().silentSince(), since) << "nobody was there to be asked";
}

// In each round the channel answers ENXIO first; `opens` are the errors of the openings at the next requests.
TEST(Channel, IsOpenedAgainAtTheNextRequestAfterTheDriverHasHungUp) {
    const struct {
        std::vector<int> opens;
        std::vector<Outcome> outcomes;
    } rounds[] = {{{0}, {Outcome::success}},
                  {{ENOENT, ETIME, 0}, {Outcome::absent, Outcome::silent, Outcome::success}},
                  {{EBUSY, 0}, {Outcome::absent, Outcome::success}}};
    for (const int oflag : {O_RDONLY, O_RDWR}) {
        ScriptedDriver driver;
        driver.otherwise([](auto, Answer&) {});
        DriverChannel channel;
        ASSERT_TRUE(channel.open(oflag));
        aalInfo query(channel, 0);
        unsigned long times = 0;
        for (const auto& round : rounds) {
            driver.failCall(1, ENXIO);
            EXPECT_FALSE(query.GetPackageRev());
            EXPECT_FALSE(channel);
            EXPECT_EQ(query.header().Resp, 201);
            EXPECT_EQ(channel.reopenings(), ++times) << "known before anything else is sent";
            for (std::size_t i = 0; i < round.opens.size(); ++i) {
                if (round.opens[i]) driver.failCall(1, round.opens[i]);
                query.GetPackageRev();
                EXPECT_EQ(query.outcome(), round.outcomes[i]);
                EXPECT_EQ(query.header().Resp, round.opens[i] ? 201 : 0);
            }
            EXPECT_TRUE(channel);
            EXPECT_EQ(channel.reopenings(), times);
        }
        for (const std::string& opened : driver.opened()) EXPECT_EQ(opened.back(), oflag ? '2' : '0');
        EXPECT_EQ(driver.opened().size(), 1U + 1U + 3U + 2U);
        EXPECT_EQ(driver.closed().size(), 3U) << "each that was lost is closed once";
    }
}

TEST(Channel, OfADriverThatComesLaterIsOpenedByARequestUnlessItWasClosed) {
    ScriptedDriver driver;
    driver.otherwise([](auto, Answer&) {});
    DriverChannel channel;
    aalInfo query(channel, 0);
    query.GetPackageRev();
    EXPECT_TRUE(driver.opened().empty()) << "nobody wanted it open";
    driver.failCall(1, ENOENT);
    EXPECT_FALSE(channel.open(O_RDONLY));
    EXPECT_TRUE(query.GetPackageRev());
    EXPECT_EQ(channel.reopenings(), 0U);
    channel.close();
    EXPECT_FALSE(query.GetPackageRev());
    EXPECT_EQ(query.header().Resp, 201);
    EXPECT_EQ(driver.opened().size(), 2U);
}

TEST(Channel, ADriverThatHungUpIsNoticedWithoutARequest) {
    ScriptedDriver driver;
    driver.otherwise([](auto, Answer&) {});
    DriverChannel& channel = driver.channel();
    EXPECT_TRUE(channel.alive());
    driver.hangUp();
    EXPECT_FALSE(channel.alive());
    EXPECT_EQ(channel.reopenings(), 1U);
    EXPECT_TRUE(aalInfo(channel, 0).GetPackageRev());
    EXPECT_TRUE(channel.alive());
}

TEST(Channel, TellsOfChangesAndNotOfQueries) {
    ScriptedDriver driver;
    DriverChannel& channel = driver.channel();
    std::vector<Outcome> outcomes;
    channel.onChange = [&](const SentChange& change) { outcomes.push_back(change.outcome); };
    lecsRequest lecs(channel, 0);
    driver.expectAny().resp(5);  // nothing ran that could be stopped
    driver.expectAny();
    driver.expectAny();
    lecs.enable(lecs_req());
    driver.expectAny();
    TraceRequest(channel).switchTrace(TraceRequest::ilmi, true);
    driver.expectAny().error(ETIME);
    lecs.go();
    driver.expectAny();
    aalInfo(channel, 0).GetPackageRev();
    EXPECT_THAT(outcomes, testing::ElementsAre(Outcome::refused, Outcome::success, Outcome::success,
                                               Outcome::success, Outcome::silent));
}
