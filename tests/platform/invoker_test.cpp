// Who runs the program where, and when.
#include "platform/host.h"
#include "platform/user.h"
#include "platform/wallclock.h"
#include "tests/support/memoryfiles.h"

#include <unistd.h>

namespace {

constexpr const char* loginFile = "/proc/self/loginuid";

}  // namespace

TEST(Invoker, NothingThatIsNoUserIsTakenForOne) {
    MemoryFiles files;
    ::unsetenv("SUDO_USER");
    ::unsetenv("PKEXEC_UID");
    EXPECT_EQ(platform::invoker(), (platform::Invoker{platform::invoker().user, {}, "", {}}));
    EXPECT_EQ(platform::invoker().user.id, ::getuid());

    const platform::Account root{0, "root"}, stranger{4294967294, ""};
    const struct {
        const char* text;
        std::optional<platform::Account> account;
    } rows[] = {
        {"0\n", root},        {"4294967294", stranger},
        {"4294967295\n", {}}, {"", {}},
        {"\n", {}},           {"4294967296\n", {}},
        {"-1", {}},           {" 0", {}},
        {"0x0", {}},          {"0 ", {}},
        {"root", {}},         {"00000000000000000000", root},
    };
    for (const auto& [text, account] : rows) {
        files.put(loginFile, text);
        const std::string_view line = text;
        ::setenv("PKEXEC_UID", std::string(line.substr(0, line.find('\n'))).c_str(), 1);
        EXPECT_EQ(platform::invoker().login, account) << text;
        EXPECT_EQ(platform::invoker().pkexecUser, account) << text;
    }
    files.put(loginFile, std::string(1000, '0'));
    ::setenv("SUDO_USER", std::string(1000, 'n').c_str(), 1);
    EXPECT_FALSE(platform::invoker().login);
    EXPECT_EQ(platform::invoker().sudoUser, std::string(64, 'n'));
    ::unsetenv("SUDO_USER");
    ::unsetenv("PKEXEC_UID");
}

TEST(Host, TheBootIdIsTheKernelsOrNone) {
    EXPECT_EQ(platform::bootId().size(), 36U);
    EXPECT_FALSE(platform::hostName().empty());
    MemoryFiles files;
    const std::string good = "0123abcd-89ef-4567-89ab-0123456789ab";
    for (const auto& [text, id] : {std::pair(good + '\n', good),
                                   {good, good},
                                   {good + "0\n", ""},
                                   {"", ""},
                                   {"0123ABCD" + good.substr(8), ""},
                                   {good.substr(1) + "\n", ""}}) {
        files.put("/proc/sys/kernel/random/boot_id", text);
        EXPECT_EQ(platform::bootId(), id) << text;
    }
}

TEST(WallClock, TimesNameTheirOffsetAndMonthsAreEnglish) {
    const struct {
        const char* zone;
        std::time_t time;
        const char *date, *line;
    } rows[] = {
        {"UTC", 0, "1970-01-01T00:00:00+00:00", "Jan  1 00:00:00"},
        {"ABC-5:30", 1770091506, "2026-02-03T09:35:06+05:30", "Feb  3 09:35:06"},
        {"ABC+3:30", 1798761599, "2026-12-31T20:29:59-03:30", "Dec 31 20:29:59"},
    };
    for (const auto& [zone, time, date, line] : rows) {
        ::setenv("TZ", zone, 1);
        EXPECT_EQ(platform::dateAndTime(time), date);
        EXPECT_EQ(platform::syslogTime(time), line);
    }
    ::unsetenv("TZ");
}
