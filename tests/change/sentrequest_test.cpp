// What is kept of requests: in the history, and of settings in sent.json.
#include "change/sentrequest.h"

#include "change/adapterchange.h"
#include "change/sent.h"
#include "driver/requestblocks.h"
#include "platform/host.h"
#include "tests/support/scripteddriver.h"
#include "tests/support/simulator.h"

using testing::ElementsAre;

TEST(SentRequest, NamesServiceSubjectAndAnswer) {
    ScriptedDriver driver;
    std::vector<std::string> kept;
    DriverChannel& channel = driver.channel();
    channel.onChange = [&](const SentChange& change) {
        const SentRequest sent = sentRequest(change);
        kept.push_back(fmt::format("{} {} {}: {} {}", sent.service, sent.request, sent.subject,
                                   answerWord(sent.answer), sent.resp));
    };
    AtmBridgedPvc bridged;
    bridged.vci = 40000;
    AtmRoutedPvc routed;
    routed.vci = 33;
    LecRequest lec(channel, 1);
    IpRequest ip(channel, 0);
    lecsRequest lecs(channel, 3);
    driver.expectAny();
    lec.changePvc(2, PvcChange::add, bridged);
    driver.expectAny().resp(9);
    ip.changePvc(PvcChange::modify, routed);
    driver.expectAny().error(ETIME);
    lecs.delClient(lecs_req::mapping(esiSelector({0, 0xa0, 0x3e, 0, 0, 1, 2}), 7));
    driver.expectAny();
    lec.stop(0);
    channel.onChange = nullptr;
    EXPECT_THAT(
        kept, ElementsAre("adapter2/lec3 BRDG_PVCADD PVC 0 / 40000: taken 0",
                          "adapter1/ip IPATM_PVCMODIFY PVC 0 / 33: refused 9",
                          "adapter4/lecs LECS_DEL_ADDR Client 00:a0:3e:00:00:01-02 of LES 8: unanswered 207",
                          "adapter2/lec1 LEC_DISABLE : taken 0"));
}

TEST(SentRequest, WhatTheDriverTookIsKnownUntilItIsLost) {
    const SampleRoot root;
    ScriptedDriver driver;
    AtmDevices mine;
    Configuration configuration("tarvolin", mine);
    ASSERT_TRUE(configuration.read());
    configuration.driverRevision = "2.0";
    mine.lec[0][0].mac = macAddress({0, 0xa0, 0x3e, 0, 0, 1});
    const DriverIdentity identity = driverIdentity("2.0", "00:a0:3e:00:00:01");
    const auto known = [&](const char* service, const char* key) {
        LastSent sent;
        sent.load();
        const auto found = sent.find(0, identity, service, key);
        return found.value ? found.value->text : found.reason;
    };
    const auto change = [&](int mtuClass, void (*answer)(Answer&)) {
        ChangeOrder order{.adapters = {0}, .before = mine};
        mine.lec[0][1].mtuClass = mtuClass;
        order.changed[0].lec[1] = true;
        order.driver = true;
        driver.otherwise([answer](auto, Answer& a) { answer(a); });
        AdapterChange run(configuration, order);
        EXPECT_FALSE(run.run());
        EXPECT_TRUE(run.result().wrote);
    };
    change(3, [](Answer&) {});
    EXPECT_EQ(known("adapter1/lec2", "mtu"), "9234");
    EXPECT_EQ(known("adapter1/lec1", "mtu"), "It has not been sent.");
    change(1, [](Answer& a) { a.resp(5); });
    EXPECT_EQ(known("adapter1/lec2", "mtu"), "9234") << "it runs with its old settings";
    change(2, [](Answer& a) { a.error(ETIME); });
    EXPECT_EQ(known("adapter1/lec2", "mtu"), "A request got no answer.");
    change(3, [](Answer&) {});
    EXPECT_EQ(known("adapter1/lec2", "mtu"), "9234");
    configuration.driverLost();
    EXPECT_EQ(known("adapter1/lec2", "mtu"), "The driver was gone for a time.");
}

TEST(SentRequest, IsGivenUpWhenNeitherSideHasTheEntry) {
    const SentRequest start{"adapter1/lec1", "LEC_INIT", "", RequestResult::taken},
        pvc{"adapter1/lec1", "BRDG_PVCADD", "PVC 0 / 10", RequestResult::refused},
        client{"adapter1/lecs", "LECS_SET_ADDR", "Client 00:a0:3e:00:00:01-00 of LES 2",
               RequestResult::refused};
    const ListChange saved{"adapter1/lec1.pvcs", {"00:20:40:00:a1:03 vci 10 llc noBroadcast rate 0"}, {}},
        another{"adapter1/lec1.pvcs", {"00:20:40:00:a1:03 vci 100"}, {}},
        mapped{"adapter1/les2.clients", {"00:a0:3e:00:00:01-00"}, {}};
    const struct {
        std::vector<SentRequest> requests;
        std::vector<ListChange> lists;
        bool givenUp;  // the last request
    } cases[] = {{{pvc}, {}, true},         {{pvc}, {another}, true},   {{pvc}, {saved}, false},
                 {{start, pvc}, {}, false}, {{client}, {saved}, true},  {{client}, {mapped}, false},
                 {{pvc, start}, {}, false}, {{start, client}, {}, true}};
    for (const auto& c : cases) {
        ChangeRecord record;
        record.requests = c.requests;
        record.lists = c.lists;
        EXPECT_EQ(isGivenUp(c.requests.size() - 1, record), c.givenUp) << &c - cases;
    }
}
