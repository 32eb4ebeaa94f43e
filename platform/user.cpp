#include "platform/user.h"

#include "platform/stream.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <map>
#include <pwd.h>
#include <string_view>
#include <unistd.h>

namespace platform {

namespace {

std::optional<bool> pretended;

std::string nameOf(uid_t id) {
    static std::map<uid_t, std::string> known;
    const auto [entry, fresh] = known.try_emplace(id);
    if (fresh) {
        std::array<char, 1U << 14> room;  // sixteen times what common entries take
        passwd account{};
        passwd* found = nullptr;
        if (::getpwuid_r(id, &account, room.data(), room.size(), &found) == 0 && found)
            entry->second = std::string(found->pw_name).substr(0, longestName);
    }
    return entry->second;
}

// The account of a number's text. None for -1, which stands for "not set", and for anything else than a
// number.
std::optional<Account> accountOf(std::string_view text) {
    uid_t id = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, id);
    if (error != std::errc() || stopped != end || id == static_cast<uid_t>(-1)) return std::nullopt;
    return Account{id, nameOf(id)};
}

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

bool superUser() {
    return pretended.value_or(::getuid() == 0);
}

void pretendSuperUser(std::optional<bool> answer) {
    pretended = answer;
}

Account realUser() {
    return {::getuid(), nameOf(::getuid())};
}

std::string userName() {
    const Account user = realUser();
    return user.name.empty() ? std::to_string(user.id) : user.name;
}

Invoker invoker() {
    Invoker result;
    result.user = realUser();
    std::string text;
    if (readWhole(HostPath{"/proc/self/loginuid"}, text, longestName)) {
        if (text.ends_with('\n')) text.pop_back();
        result.login = accountOf(text);
    }
    result.sudoUser = environment("SUDO_USER").substr(0, longestName);
    result.pkexecUser = accountOf(environment("PKEXEC_UID"));
    return result;
}

}  // namespace platform
