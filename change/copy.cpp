#include "change/copy.h"

#include "change/saverecord.h"
#include "config/pdfedit.h"
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

// The process in the name of a copy, which is written as copyName() and the section engine write it. 0: the
// name is another one.
pid_t processOf(std::string_view name, CopiesOf whose) {
    std::string_view number;
    if (whose == CopiesOf::engine) {
        if (name.starts_with("atmTV")) number = name.substr(5);
    } else if (const std::size_t at = name.rfind(".tv");
               name.starts_with('.') && at != 0 && at != name.npos) {
        number = name.substr(at + 3);
    }
    pid_t process = 0;
    const char* end = number.data() + number.size();
    const auto [stopped, error] = std::from_chars(number.data(), end, process, 16);
    const bool written = error == std::errc() && stopped == end && process > 0 &&
                         number == fmt::format("{:x}", static_cast<unsigned>(process));
    return written ? process : 0;
}

// A list may have been given such a name.
bool isNamed(std::string_view name) {
    std::string text;
    return platform::readWhole(platform::hostPath(PdfEdit::parameterFile), text) &&
           text.find(name) != text.npos;
}

bool isGone(pid_t process) {
    return process == ::getpid() || (::kill(process, 0) != 0 && errno == ESRCH);
}

int fill(int copy, std::string_view content, const platform::OpenFile& file, Times times) {
    if (platform::writeAll(copy, content) != 0) return -1;
    if (file && files().takeAttributes(file.descriptor(), copy) != 0) return -1;
    if (times == Times::kept && files().takeTimes(file.descriptor(), copy) != 0) return -1;
    return files().sync(copy);
}

}  // namespace

std::string copyName(const HostPath& place, CopyOf which) {
    constexpr std::size_t longest = 200;  // of the 255 bytes of a file name
    std::string name = place.text.substr(place.text.rfind('/') + 1);
    if (name.size() > longest) name = name.substr(0, longest) + contentHash(name);
    return fmt::format(".{}{}.tv{:x}", name, which == CopyOf::oldContent ? ".old" : "",
                       static_cast<unsigned>(::getpid()));
}

int makeCopy(const HostPath& place, CopyOf which, std::string_view content, const platform::OpenFile& file,
             Times times) {
    const HostPath path{platform::directoryOf(place).text + '/' + copyName(place, which)};
    const mode_t mode = file ? 0600 : 0644;
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
    int descriptor = files().open(path, flags, mode);
    // Left by a killed process that had this number.
    if (descriptor < 0 && errno == EEXIST && files().remove(path) == 0)
        descriptor = files().open(path, flags, mode);
    if (descriptor < 0) return -1;
    platform::OpenFile copy(descriptor);
    int error = fill(descriptor, content, file, times) == 0 ? 0 : errno;
    if (copy.close() != 0 && error == 0) error = errno;
    if (error == 0) return 0;
    files().remove(path);
    errno = error;
    return -1;
}

void removeDeadCopies(const HostPath& directory, CopiesOf whose) {
    std::vector<std::string> names;
    if (files().list(directory, names) != 0) return;
    for (const std::string& name : names) {
        const pid_t process = processOf(name, whose);
        if (process == 0 || !isGone(process)) continue;
        HostPath path = directory;
        path.text.append("/").append(name);
        struct stat status {};
        const bool ours = files().status(path, status) == 0 && S_ISREG(status.st_mode) &&
                          status.st_uid == ::geteuid() && !isNamed(name);
        if (ours && files().remove(path) == 0)
            tvlog << "Removed The Copy Of A Process That Is Gone - " << path.text << std::endl;
    }
}
