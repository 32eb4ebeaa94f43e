#include "platform/host.h"

#include "platform/stream.h"

#include <array>
#include <unistd.h>

namespace platform {

std::string hostName() {
    std::array<char, 65> name{};  // HOST_NAME_MAX and the zero, which a cut name may lack
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
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
