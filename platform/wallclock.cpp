#include "platform/wallclock.h"

#include <array>
#include <cstdlib>
#include <fmt/format.h>

namespace platform {

namespace {

std::tm localTime(std::time_t time) {
    std::tm result{};
    ::tzset();
    ::localtime_r(&time, &result);
    return result;
}

std::string utcSecond(std::time_t time) {
    std::tm utc{};
    ::gmtime_r(&time, &utc);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                       utc.tm_hour, utc.tm_min, utc.tm_sec);
}

}  // namespace

std::string dateAndTime(std::time_t time) {
    const std::tm t = localTime(time);
    const long minutes = std::labs(t.tm_gmtoff) / 60;
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}{}{:02}:{:02}", t.tm_year + 1900, t.tm_mon + 1,
                       t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, t.tm_gmtoff < 0 ? '-' : '+', minutes / 60,
                       minutes % 60);
}

std::time_t momentOf(const std::string& dateAndTime) {
    std::tm t{};
    const char* rest = ::strptime(dateAndTime.c_str(), "%Y-%m-%dT%H:%M:%S%z", &t);
    if (!rest || *rest) return 0;
    const long ahead = t.tm_gmtoff;  // timegm() clears it
    return ::timegm(&t) - ahead;
}

std::string inUtc(const std::string& dateAndTime) {
    const std::time_t moment = momentOf(dateAndTime);
    return moment == 0 ? dateAndTime : utcSecond(moment) + 'Z';
}

std::string inUtc(std::chrono::system_clock::time_point moment) {
    const auto second = std::chrono::floor<std::chrono::seconds>(moment);
    const auto rest = std::chrono::floor<std::chrono::milliseconds>(moment - second);
    return fmt::format("{}.{:03}Z", utcSecond(std::chrono::system_clock::to_time_t(second)), rest.count());
}

std::string syslogTime(std::time_t time) {
    static constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::tm t = localTime(time);
    return fmt::format("{} {:2} {:02}:{:02}:{:02}", months.at(static_cast<std::size_t>(t.tm_mon)), t.tm_mday,
                       t.tm_hour, t.tm_min, t.tm_sec);
}

}  // namespace platform
