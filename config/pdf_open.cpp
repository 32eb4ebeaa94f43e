// Opening and creating sections; the handles that are open.
#include "config/pdf_internal.h"
#include "platform/index.h"

#include <algorithm>
#include <cstring>
#include <vector>

using namespace pdf;

namespace {

std::vector<std::unique_ptr<SectionHandle>>& openSections() {
    static std::vector<std::unique_ptr<SectionHandle>> handles;
    return handles;
}

int cannotOpen(std::string_view name) {
    say("OpenSection: Error Opening File {}\n", name);
    return -1;
}

int openFile(SectionHandle& handle, std::string_view fileName) {
    if (fileName.size() >= handle.rfn.size) {
        errno = ENAMETOOLONG;
        return cannotOpen(fileName);
    }
    handle.rfn = fileName;
    if (handle.text) return 0;
    handle.target = platform::hostPath(fileName);
    const bool writing = handle.rflg & sectionForWriting;
    if (!writing || platform::files().resolve(platform::hostPath(fileName), handle.target) == 0)
        handle.rfd = platform::openForReading(handle.target);
    return handle.rfd ? 0 : cannotOpen(fileName);
}

// A line about the read error has been printed already.
bool copyFailed(const SectionHandle& handle) {
    return handle.ioError && !std::ferror(handle.rfd.get());
}

bool isWriting(const SectionHandle& handle) {
    return handle.rflg & sectionForWriting;
}

// Two copies would have the same name.
bool anotherIsWriting(const SectionHandle& handle) {
    return std::any_of(openSections().begin(), openSections().end(),
                       [&](const auto& open) { return open.get() != &handle && isWriting(*open); });
}

// 0, or -1 and errno.
int locate(SectionHandle& handle, std::string_view fileName, std::string_view sectionPath) {
    if (sectionPath.size() >= handle.section.size) {
        say("SectNameFwd: Section Name Exceeds Buffer\n");
        return fail(ENAMETOOLONG);
    }
    if (openFile(handle, fileName) != 0) return -1;
    if (isWriting(handle)) {
        errno = EBUSY;
        if (anotherIsWriting(handle)) return cannotOpen(fileName);
        if (!handle.text && startCopy(handle) != 0) return -1;
    }

    std::size_t behind = 0;
    if (handle.text ? findInText(handle, sectionPath) : scanTo(handle, sectionPath, behind))
        return ReadSectData(&handle) ? 0 : fail(handle.ioError);
    if (handle.wfd && copyFailed(handle)) say("OpenSection: Error Writing File {}\n\n", handle.wfn.view());
    if (handle.ioError) return fail(handle.ioError);
    if (!isWriting(handle)) return fail(ESRCH);
    return CreateSection(&handle, sectionPath) ? 0 : -1;
}

// Back to the start of the file with an empty copy.
bool startAgain(SectionHandle& handle) {
    handle.line = 0;
    handle.nest = 0;
    handle.section = "";
    handle.ahead = {};
    if (handle.text) {
        handle.ahead = *handle.text;
        handle.copying = true;
        return true;
    }
    if (std::fflush(handle.wfd.get()) == 0 && std::fseek(handle.wfd.get(), 0, SEEK_SET) == 0 &&
        platform::files().truncate(platform::streamDescriptor(handle.wfd.get()), 0) == 0 &&
        std::fseek(handle.rfd.get(), 0, SEEK_SET) == 0)
        return true;
    handle.ioError = errno ? errno : EIO;
    return false;
}

// Copies the parent's lines from behind its opening bracket up to its closing line, which stays in linebuf.
// False when a section put in front of that line would not be found as a child of the parent, or would hide
// keys of it: the closing bracket has to be the first thing on a line of its own, and the path of the scan,
// which a faulty opening in between leads astray, the parent's.
bool copyParent(SectionHandle& handle, std::string_view parent, std::size_t behind) {
    int depth = 1;
    bool opening = true, startsLine = true;
    for (;;) {
        const std::string_view line = handle.lineText();
        for (std::size_t at = nextBracket(line, behind); at != std::string_view::npos;
             at = nextBracket(line, at + 1)) {
            depth += line[at] == '[' ? 1 : -1;
            if (depth == 0)
                return !opening && startsLine && line.find_first_not_of(" \t") == at &&
                       handle.section.view() == parent && std::ranges::count(parent, '/') == handle.nest;
            if (line[at] == '[')
                SectNameFwd(&handle, line.data() + at);
            else
                SectNameRev(&handle);
        }
        if (!opening && !put(handle, line)) return false;
        startsLine = line.ends_with('\n');
        if (!ReadSectLine(&handle)) return false;
        opening = false;
        behind = 0;
    }
}

bool isSectionName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return c > ' ' && c <= 'z' && !std::strchr("#=[]", c);
    });
}

SectionHandle* cannotCreate(const SectionHandle& handle) {
    if (copyFailed(handle)) say("CreateSection: Error Writing File {}\n\n", handle.wfn.view());
    if (handle.ioError) errno = handle.ioError;
    return nullptr;
}

SectionHandle* open(std::string* text, SectionIndex* index, std::string_view fileName,
                    std::string_view sectionPath, std::uint32_t flags) {
    openSections().push_back(std::make_unique_for_overwrite<SectionHandle>());
    SectionHandle* handle = openSections().back().get();
    handle->text = text;
    handle->index = index;
    handle->rflg = flags & sectionForWriting;
    if (locate(*handle, fileName, sectionPath) == 0) return handle;
    const int error = errno;
    handle->wflg = 0;
    CloseSection(handle);
    errno = error;
    return nullptr;
}

}  // namespace

SectionHandle* OpenSection(std::string_view fileName, std::string_view sectionPath, std::uint32_t flags) {
    return open(nullptr, nullptr, fileName, sectionPath, flags);
}

SectionHandle* OpenSection(std::string& text, SectionIndex& index, std::string_view fileName,
                           std::string_view sectionPath, std::uint32_t flags) {
    return open(&text, &index, fileName, sectionPath, flags);
}

SectionHandle* CreateSection(SectionHandle* handle, std::string_view sectionPath) {
    const std::size_t slash = sectionPath.rfind('/');
    if (slash == std::string_view::npos || slash == 0) {
        errno = ESRCH;
        return nullptr;
    }
    const std::string_view parent = sectionPath.substr(0, slash);
    const std::string_view name = sectionPath.substr(slash + 1);
    std::size_t behind = 0;
    if (handle->ioError || !isWriting(*handle) || !startAgain(*handle)) return cannotCreate(*handle);
    if (!scanTo(*handle, parent, behind)) {
        errno = ESRCH;
        return cannotCreate(*handle);
    }
    const bool fits = copyParent(*handle, parent, behind) && isSectionName(name) &&
                      asIndex(handle->nest) + name.size() + 2 <= sectionLineLimit;
    if (!fits && !handle->ioError) {
        say("CreateSection: No Room In Section {}\n", parent);
        errno = EINVAL;
        return nullptr;
    }
    handle->section = sectionPath;
    const std::string tabs(asIndex(handle->nest), '\t');
    if (!fits || !put(*handle, fmt::format("{}[{}\n", tabs, name))) return cannotCreate(*handle);
    handle->rflg |= sectionCreated;
    handle->data = "";
    return handle;
}

int CloseSection(SectionHandle* handle) {
    auto& handles = openSections();
    const auto place =
        std::find_if(handles.begin(), handles.end(), [&](const auto& open) { return open.get() == handle; });
    if (place == handles.end() || handle->cookie != sectionCookie) return 0;
    const int result = isWriting(*handle) && handle->wflg > 0 ? commit(*handle) : 0;
    const int error = errno;
    dropCopy(*handle);
    handle->cookie = 0;
    handles.erase(place);
    errno = error;
    return result;
}

void AbandonSections() {
    for (const auto& handle : openSections()) dropCopy(*handle);
    openSections().clear();
}
