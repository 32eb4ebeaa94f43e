// What was last sent to the driver: kept, and never believed where it no longer holds.
#include "change/sent.h"
#include "tests/support/failingfiles.h"
#include "tests/support/logcapture.h"
#include "tests/support/temproot.h"

namespace {

constexpr const char* file = "/var/lib/tarvolin/sent.json";
const DriverIdentity here{"boot", "4.1", "00a03e000001"};
const std::string odd = "caf\xe9 \\x41 \"\n";

LastSent twoAdapters() {
    LastSent sent;
    sent.note(1, here, "lec2", {{"mtu", "1516"}, {"elan_name", odd}}, 0);
    sent.note(1, here, "lec2", {{"mtu", "4544"}}, 1);
    sent.note(2, here, "lec2", {{"mtu", "9234"}}, 2);
    return sent;
}

// The value and its seconds, or the reason why there is none.
std::string found(const LastSent& sent, int adapter, const DriverIdentity& now, const std::string& service,
                  const std::string& key) {
    const LastSent::Found result = sent.find(adapter, now, service, key);
    return result.value ? result.value->text + " " + result.value->time.substr(17, 2) : result.reason;
}

LastSent loaded() {
    LastSent sent;
    sent.note(7, here, "lec0", {{"mtu", "of before"}}, 0);
    sent.load();
    return sent;
}

constexpr const char* never = "It has not been sent.";

}  // namespace

TEST(Sent, ValuesComeBackWithTheirTimes) {
    const TempRoot root;
    EXPECT_EQ(found(loaded(), 7, here, "lec0", "mtu"), never);
    {
        FailingFiles calls;
        ASSERT_EQ(twoAdapters().save(), 0);
        root.write(std::string(file) + ".new", "left by a killed process");
        ASSERT_EQ(twoAdapters().save(), 0);
        EXPECT_EQ(calls.count(FileCall::sync), 0);
        EXPECT_EQ(calls.count(FileCall::rename), 2);
    }
    EXPECT_EQ(std::filesystem::status(root.at(file)).permissions(), std::filesystem::perms(0600));
    const LastSent sent = loaded();
    EXPECT_EQ(found(sent, 1, here, "lec2", "mtu"), "4544 01");
    EXPECT_EQ(found(sent, 1, here, "lec2", "elan_name"), odd + " 00");
    EXPECT_EQ(found(sent, 2, here, "lec2", "mtu"), "9234 02");
    for (const auto& [adapter, service, key] :
         {std::tuple(3, "lec2", "mtu"), {2, "lec1", "mtu"}, {2, "lec2", "elan_name"}, {7, "lec0", "mtu"}})
        EXPECT_EQ(found(sent, adapter, here, service, key), never);
}

TEST(Sent, AnotherStartDriverOrAdapterVoidsAndSoDoesForgetting) {
    const std::string gone = "The driver was gone at 12:00.";
    const struct {
        DriverIdentity now;
        const char* reason;
    } rows[] = {
        {{"later boot", here.revision, here.mac}, "The system has been restarted since."},
        {{"", here.revision, here.mac}, "The system does not tell when it was started."},
        {{here.boot, "4.2", here.mac}, "The driver has another revision now."},
        {{here.boot, "", here.mac}, "The driver does not tell its revision."},
        {{here.boot, here.revision, "00a03e000002"}, "The adapter has another MAC address now."},
        {{here.boot, here.revision, ""}, "The driver does not tell the adapter's MAC address."},
    };
    for (const auto& [now, reason] : rows) {
        const TempRoot root;
        LastSent sent = twoAdapters();
        EXPECT_EQ(found(sent, 1, now, "lec2", "mtu"), reason);
        sent.note(1, now, "lec0", {{"mtu", "1"}}, 0);  // for now on; the rest is of before
        ASSERT_EQ(sent.save(), 0);
        sent = loaded();
        EXPECT_EQ(found(sent, 1, now, "lec2", "mtu"), reason);
        EXPECT_EQ(found(sent, 2, here, "lec2", "mtu"), "9234 02");
        const bool complete = !now.boot.empty() && !now.revision.empty() && !now.mac.empty();
        EXPECT_EQ(found(sent, 1, now, "lec0", "mtu"), complete ? "1 00" : reason);

        sent.forget(2, "It was switched off.");
        EXPECT_EQ(found(sent, 2, here, "lec2", "mtu"), "It was switched off.");
        sent.note(2, here, "lec1", {{"mtu", "5"}}, 5);
        sent.forgetAll(gone);
        ASSERT_EQ(sent.save(), 0);
        sent = loaded();
        for (int adapter = 1; adapter <= 2; ++adapter)
            EXPECT_EQ(found(sent, adapter, here, "lec1", "mtu"), gone);
        sent.note(2, here, "lec1", {{"mtu", "6"}}, 6);
        EXPECT_EQ(found(sent, 2, here, "lec1", "mtu"), "6 06");
        EXPECT_EQ(found(sent, 2, here, "lec2", "mtu"), gone);
    }
}

TEST(Sent, ADamagedFileIsSaidAndNotUsed) {
    const TempRoot root;
    ASSERT_EQ(twoAdapters().save(), 0);
    const std::string whole = root.read(file);
    LogCapture log;
    const auto refused = [&](const std::string& text) {
        root.write(file, text);
        const LastSent sent = loaded();
        EXPECT_EQ(found(sent, 1, here, "lec2", "mtu"), never);
        EXPECT_EQ(found(sent, 7, here, "lec0", "mtu"), never);
        return log.take() == "/var/lib/tarvolin/sent.json - damaged or of another format, not used\n";
    };
    for (std::size_t length = 0; length + 2 < whole.size(); ++length)
        EXPECT_TRUE(refused(whole.substr(0, length))) << length;
    for (const auto& [from, to] : {std::pair("\"format\": 1", "\"format\": 2"),
                                   {"\"format\"", "\"Format\""},
                                   {"\"2\": {", "\"one\": {"},
                                   {"\"2\": {", "\"\": {"},
                                   {"\"4544\"", "4544"},
                                   {"\"boot\": \"boot\"", "\"boot\": null"},
                                   {"\"services\"", "\"service\""},
                                   {"\"adapters\"", "\"adapter\""},
                                   {"caf", "\xff"}}) {
        std::string text = whole;
        ASSERT_NE(text.find(from), std::string::npos) << from;
        EXPECT_TRUE(refused(text.replace(text.find(from), std::string_view(from).size(), to))) << to;
    }
    EXPECT_TRUE(refused(std::string(1U << 12, '[')));
    EXPECT_TRUE(refused("[]"));
    root.write(file, std::string(3U << 20, ' '));
    loaded();
    EXPECT_EQ(log.take(), "/var/lib/tarvolin/sent.json: File too large\n");
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string text = whole;
        text[at] = "\"\\\xff}"[at % 4];
        root.write(file, text);
        const std::string value = found(loaded(), 1, here, "lec2", "mtu");
        EXPECT_TRUE(log.take().empty() || value == never) << at;
    }
}

TEST(Sent, AFailedSaveLeavesNothingThatIsOlder) {
    const TempRoot root;
    LogCapture log;
    int k = 1;
    for (bool failed = true; failed; ++k) {
        ASSERT_EQ(twoAdapters().save(), 0);
        LastSent newer = loaded();
        newer.note(1, here, "lec2", {{"mtu", "18190"}}, 9);
        log.take();
        int result = 0;
        {
            FailingFiles calls;
            calls.failAt(k, ENOSPC);
            result = newer.save();
            failed = calls.failed();
        }
        EXPECT_EQ(found(loaded(), 1, here, "lec2", "mtu"), result == 0 ? "18190 09" : never) << k;
        EXPECT_EQ(result != 0, log.text.find("Last sent - /var/lib/tarvolin/sent.json: ") == 0) << log.text;
        EXPECT_FALSE(root.exists(std::string(file) + ".new"));
    }
    EXPECT_GT(k, 8);
}
