// Lines, section paths and the loading of a section's data.
#include "config/pdf_internal.h"

#include <cstring>
#include <memory>

using namespace pdf;

bool ReadSectLine(SectionHandle* handle) {
    handle->lineLength = 0;
    std::FILE* file = handle->rfd.get();
    if ((!file && !handle->text) || handle->ioError) return false;
    for (bool ended = false; !ended && handle->lineLength < sectionLineLimit;) {
        if (handle->ahead.empty() && file)
            handle->ahead = {handle->block.data(),
                             std::fread(handle->block.data(), 1, handle->block.size(), file)};
        if (handle->ahead.empty()) break;
        const std::string_view room = handle->ahead.substr(0, sectionLineLimit - handle->lineLength);
        const std::size_t newline = room.find('\n');
        ended = newline != std::string_view::npos;
        const std::size_t taken = ended ? newline + 1 : room.size();
        std::memcpy(handle->linebuf.data() + handle->lineLength, room.data(), taken);
        handle->lineLength += taken;
        handle->ahead.remove_prefix(taken);
    }
    handle->linebuf[handle->lineLength] = '\0';
    if (file && std::ferror(file)) {
        handle->ioError = errno ? errno : EIO;
        say("ReadSectLine: Error Reading File {}\n", handle->rfn.view());
        return false;
    }
    if (handle->lineLength == 0) return false;
    ++handle->line;
    return true;
}

void SectNameFwd(SectionHandle* handle, const char* bracket) {
    const auto skipBlanks = [](const char* at) {
        while (isBlank(*at)) ++at;
        return at;
    };
    std::string path = handle->section.str() + '/';
    const char* at = bracket + 1;
    while (!endsValue(*at) && *at != '=') path += *at++;
    at = skipBlanks(at);
    if (*at == '=') {
        at = skipBlanks(at + 1);
        while (!endsValue(*at)) path += *at++;
    } else if (!endsValue(*at) && *at != '[' && *at != ']') {
        say("SectNameFwd: syntax error @ line {}\n", handle->line);
        return;
    }
    if (path.size() >= handle->section.size) {
        say("SectNameFwd: Section Name Exceeds Buffer\n");
        return;
    }
    handle->section = path;
    ++handle->nest;
}

void SectNameRev(SectionHandle* handle) {
    const std::string path = handle->section.str();
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return;
    handle->section = path.substr(0, slash);
    --handle->nest;
}

bool ReadSectData(SectionHandle* handle) {
    std::string data;
    const auto unusable = [&](int error) {
        handle->data = "";
        handle->dataError = error;
        return true;
    };
    while (ReadSectLine(handle)) {
        const std::string_view line = handle->lineText();
        if (line.find('\0') != std::string_view::npos) {
            say("ReadSectData: NUL Byte In Section {}\n", handle->section.view());
            return unusable(EILSEQ);
        }
        if (data.size() + line.size() >= sectionDataSize) {
            say("ReadSectData: Buffer Exceeded\n");
            return unusable(EFBIG);
        }
        data += line;
        if (nextBracket(line, 0) != std::string_view::npos) break;
    }
    handle->data = data;
    handle->dataLength = data.size();
    return handle->ioError == 0;
}

namespace {

// Follows the brackets of the line that was read, up to the first behind which `found()` is true, and gives
// the position behind that.
template <class Found> bool follow(SectionHandle& handle, std::size_t& behind, Found found) {
    const std::string_view line = handle.lineText();
    for (std::size_t at = nextBracket(line, 0); at != std::string_view::npos;
         at = nextBracket(line, at + 1)) {
        if (line[at] == '[')
            SectNameFwd(&handle, line.data() + at);
        else
            SectNameRev(&handle);
        behind = at + 1;
        if (found()) return true;
    }
    return false;
}

void fill(SectionIndex& index, SectionHandle& handle) {
    handle.ahead = *handle.text;
    std::size_t behind = 0;
    while (ReadSectLine(&handle))
        follow(handle, behind, [&] {
            const std::string_view path = handle.section.view();
            if (!index.places.contains(path))
                index.places.emplace(path, SectionIndex::Place{handle.text->size() - handle.ahead.size(),
                                                               handle.nest, handle.line});
            return false;
        });
    index.filled = true;
}

}  // namespace

bool pdf::findInText(SectionHandle& handle, std::string_view path) {
    SectionIndex& index = *handle.index;
    if (!index.filled) fill(index, handle);
    const auto place = index.places.find(path);
    if (place == index.places.end()) return false;
    handle.section = path;
    handle.nest = place->second.nest;
    handle.line = place->second.line;
    handle.dataAt = place->second.at;
    handle.ahead = std::string_view(*handle.text).substr(handle.dataAt);
    return true;
}

std::vector<SectionOpening> SectionOpenings(std::string& text) {
    std::vector<SectionOpening> all;
    std::vector<std::size_t> open;
    const auto handle = std::make_unique<SectionHandle>();
    handle->text = &text;
    handle->ahead = text;
    while (ReadSectLine(handle.get())) {
        const std::string_view line = handle->lineText();
        const std::size_t lineAt = text.size() - handle->ahead.size() - line.size();
        for (std::size_t at = nextBracket(line, 0); at != std::string_view::npos;
             at = nextBracket(line, at + 1)) {
            if (line[at] == ']') {
                SectNameRev(handle.get());
                if (open.empty()) continue;
                all[open.back()].closed = true;
                open.pop_back();
                continue;
            }
            SectionOpening opening{.path = {}, .parent = handle->section.str(), .at = lineAt + at};
            const int outside = handle->nest;
            SectNameFwd(handle.get(), line.data() + at);
            if (handle->nest > outside) {
                opening.path = handle->section.str();
                open.push_back(all.size());
            }
            all.push_back(std::move(opening));
        }
    }
    return all;
}

bool pdf::scanTo(SectionHandle& handle, std::string_view path, std::size_t& behind) {
    while (ReadSectLine(&handle)) {
        if (handle.copying && !put(handle, handle.lineText())) return false;
        if (follow(handle, behind, [&] { return handle.section.view() == path; })) return true;
    }
    return false;
}
