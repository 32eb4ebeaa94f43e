#include "platform/host.h"

#include "platform/stream.h"

#include <array>
#include <fmt/format.h>
#include <sstream>
#include <unistd.h>

namespace platform {

std::string hostName() {
    std::array<char, 65> name{};  // HOST_NAME_MAX and the zero, which a cut name may lack
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

// Behind the name, which ends at the last parenthesis, stand the state and, 20th from it, the start time.
std::string processBegin(pid_t process) {
    constexpr std::size_t longest = 1024;
    constexpr int begin = 19;
    std::string text, field;
    if (!readWhole(HostPath{fmt::format("/proc/{}/stat", process)}, text, longest)) return {};
    const std::size_t name = text.rfind(')');
    if (name == std::string::npos) return {};
    std::istringstream fields(text.substr(name + 1));
    for (int i = 0; i <= begin && fields >> field; ++i)
        if (i == 0 && (field == "Z" || field == "X")) return {};
    return fields ? field : "";
}

std::string bootId() {
    constexpr std::size_t length = 36;
    std::string text;
    if (!readWhole(HostPath{"/proc/sys/kernel/random/boot_id"}, text, length + 1)) return {};
    if (text.ends_with('\n')) text.pop_back();
    const bool good =
        text.size() == length && text.find_first_not_of("0123456789abcdef-") == std::string::npos;
    return good ? text : "";
}

}  // namespace platform
