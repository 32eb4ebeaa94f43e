#include "change/copy.h"

#include "platform/debuglog.h"
#include "platform/stream.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

using platform::files;
using platform::HostPath;

namespace {

// The process in the name of a copy: of this folder's, or of the section engine's. 0: it is another file.
pid_t processOf(std::string_view name) {
    std::string_view number;
    if (const std::size_t at = name.rfind(".tv"); name.starts_with('.') && at != 0 && at != name.npos)
        number = name.substr(at + 3);
    else if (name.starts_with("atmTV"))
        number = name.substr(5);
    pid_t process = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), process, 16);
    return error == std::errc() && end == number.data() + number.size() && process > 0 ? process : 0;
}

bool isGone(pid_t process) {
    return process == ::getpid() || (::kill(process, 0) != 0 && errno == ESRCH);
}

int fill(int copy, std::string_view content, const platform::OpenFile& file) {
    if (platform::writeAll(copy, content) != 0) return -1;
    if (file && files().takeAttributes(file.descriptor(), copy) != 0) return -1;
    return files().sync(copy);
}

}  // namespace

std::string copyName(const HostPath& place, CopyOf which) {
    return fmt::format(".{}{}.tv{:x}", place.text.substr(place.text.rfind('/') + 1),
                       which == CopyOf::oldContent ? ".old" : "", static_cast<unsigned>(::getpid()));
}

int makeCopy(const HostPath& place, CopyOf which, std::string_view content, const platform::OpenFile& file) {
    const HostPath path{platform::directoryOf(place).text + '/' + copyName(place, which)};
    const mode_t mode = file ? 0600 : 0644;
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
    int descriptor = files().open(path, flags, mode);
    // Left by a killed process that had this number.
    if (descriptor < 0 && errno == EEXIST && files().remove(path) == 0)
        descriptor = files().open(path, flags, mode);
    if (descriptor < 0) return -1;
    platform::OpenFile copy(descriptor);
    int error = fill(descriptor, content, file) == 0 ? 0 : errno;
    if (copy.close() != 0 && error == 0) error = errno;
    if (error == 0) return 0;
    files().remove(path);
    errno = error;
    return -1;
}

void removeDeadCopies(const std::set<std::string>& directories) {
    std::vector<std::string> names;
    for (const std::string& directory : directories) {
        if (files().list({directory}, names) != 0) continue;
        for (const std::string& name : names) {
            HostPath path{directory};
            path.text.append("/").append(name);
            struct stat status {};
            const pid_t process = processOf(name);
            if (process == 0 || !isGone(process) || files().status(path, status) != 0 ||
                !S_ISREG(status.st_mode))
                continue;
            if (files().remove(path) == 0)
                tvlog << "Removed The Copy Of A Process That Is Gone - " << path.text << std::endl;
        }
    }
}
