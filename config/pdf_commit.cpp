// The copy that replaces the file: its place, its content, and the rename.
#include "config/pdf_internal.h"
#include "platform/index.h"

#include <fcntl.h>
#include <unistd.h>

using namespace pdf;
using platform::files;
using platform::HostPath;

namespace {

// A rename works within one file system only. If the usual place of the copy is on another file system than
// the file, the copy is made beside the file.
void nameCopy(SectionHandle& handle, dev_t fileSystem, HostPath& path) {
    const std::string name = fmt::format("TV{:x}", static_cast<unsigned>(::getpid()));
    const std::string usual = "/etc/atm" + name;
    path = platform::hostPath(usual);
    handle.wfn = usual;
    struct stat directory {};
    if (files().status(platform::directoryOf(path), directory) == 0 && directory.st_dev == fileSystem) return;
    path.text = platform::directoryOf(handle.target).text + '/' + name;
    handle.wfn = path.text;
}

bool writeRest(SectionHandle& handle) {
    if (!put(handle, handle.data.view())) return false;
    if (handle.rflg & sectionCreated) {
        const std::string tabs(asIndex(handle.nest), '\t');
        if (!put(handle, tabs + "]\n") || !put(handle, handle.lineText())) return false;
    }
    while (ReadSectLine(&handle))
        if (!put(handle, handle.lineText())) return false;
    return handle.ioError == 0;
}

bool writeCopy(SectionHandle& handle) {
    const int file = platform::streamDescriptor(handle.rfd.get());
    const int copy = platform::streamDescriptor(handle.wfd.get());
    const bool written = writeRest(handle) && std::fflush(handle.wfd.get()) == 0 &&
                         files().takeAttributes(file, copy) == 0 && files().sync(copy) == 0;
    if (!written) {
        if (handle.ioError) errno = handle.ioError;
        return false;
    }
    return platform::closeWritten(std::move(handle.wfd)) == 0;
}

// Puts the section's data in the place that they have in the text. The places behind it move.
void editText(SectionHandle& handle) {
    std::string& text = *handle.text;
    const std::string_view data = handle.data.view();
    if (std::string_view(text).substr(handle.dataAt, handle.dataLength) == data) return;
    text.replace(handle.dataAt, handle.dataLength, data);
    for (auto& [path, place] : handle.index->places)
        if (place.at > handle.dataAt) place.at = place.at - handle.dataLength + data.size();
}

int commitText(SectionHandle& handle) {
    if (!(handle.rflg & sectionCreated)) {
        editText(handle);
        return 0;
    }
    if (!writeRest(handle)) return fail(handle.ioError);
    handle.text->swap(handle.textCopy);
    *handle.index = {};
    return 0;
}

}  // namespace

bool pdf::put(SectionHandle& handle, std::string_view text) {
    if (handle.ioError) return false;
    if (handle.text) {
        handle.textCopy += text;
        return true;
    }
    if (std::fwrite(text.data(), 1, text.size(), handle.wfd.get()) == text.size()) return true;
    handle.ioError = errno ? errno : EIO;
    return false;
}

int pdf::startCopy(SectionHandle& handle) {
    struct stat file {};
    HostPath path;
    int descriptor = -1;
    if (files().status(platform::streamDescriptor(handle.rfd.get()), file) == 0) {
        nameCopy(handle, file.st_dev, path);
        files().remove(path);  // left by a process of this number that was killed
        descriptor = files().open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    }
    if (descriptor >= 0) {
        handle.temporary = path;
        handle.wfd = platform::streamForWriting(descriptor);
        handle.copying = true;
        if (handle.wfd) return 0;
    }
    say("OpenSection: Error Opening File {}\n", handle.wfn.view());
    return -1;
}

void pdf::dropCopy(SectionHandle& handle) {
    handle.wfd.reset();
    if (!handle.temporary.text.empty()) files().remove(handle.temporary);
    handle.temporary.text.clear();
}

int pdf::commit(SectionHandle& handle) {
    if (handle.text) return commitText(handle);
    if (!writeCopy(handle)) {
        say("CloseSection: Error Writing File {}\n\n", handle.wfn.view());
        const int error = errno;
        dropCopy(handle);
        return fail(error);
    }
    handle.rfd.reset();
    if (files().rename(handle.temporary, handle.target) != 0) {
        say("CloseSection: Rename Error\n\n");
        const int error = errno;
        dropCopy(handle);
        return fail(error);
    }
    handle.temporary.text.clear();
    if (platform::syncDirectory(platform::directoryOf(handle.target)) == 0) return 0;
    say("CloseSection: Error Writing File {}\n\n", handle.rfn.view());
    return -1;
}
