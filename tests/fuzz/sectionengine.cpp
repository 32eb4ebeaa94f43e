// The section engine over a hostile file. Input: a line with the section's path, a line with the text to
// write, then the file. Three keys are written, one after the other, into the section (which may be created
// for it).
//
// After each commit: the value reads back as it was written, the other keys read as before, and every byte
// outside the section's lines is as it was. The file as a text in memory becomes the same.
#include "../support/memoryfiles.h"
#include "config/pdf_io.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace {

constexpr const char* file = "/etc/atm/tvconf";
constexpr std::array<const char*, 3> keys{"Enabled", "ElanName", "k"};

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

using Values = std::array<std::optional<std::string>, keys.size()>;

// False when there is no such section. A key without a value, and one that is not there, are both nothing.
bool readAll(std::string_view path, Values& values) {
    SectionHandle* handle = OpenSection(file, path, 0);
    if (!handle) return false;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        std::array<char, 80> text{};
        values[i].reset();
        if (ReadKey(handle, keys[i], text.data(), keyString, text.size()) == 0) values[i] = text.data();
        std::array<std::uint8_t, 8> bytes{};
        for (const int type : {keyInt8, keyInt16, keyInt32, keyLong, keyBytes, keyIp})
            ReadKey(handle, keys[i], bytes.data(), type, 7);
    }
    CloseSection(handle);
    return true;
}

bool oneLine(const char* a, const char* b) {
    if (!a || !b) return a == b;
    return std::find(std::min(a, b), std::max(a, b), '\n') == std::max(a, b);
}

struct InMemory {
    std::string text;
    SectionIndex index;

    // False when the section cannot be opened.
    bool write(std::string_view path, const char* key, std::string value) {
        SectionHandle* handle = OpenSection(text, index, file, path, sectionForWriting);
        if (!handle) return false;
        WriteKey(handle, key, value.data(), keyString, static_cast<int>(value.size()) + 1);
        require(CloseSection(handle) == 0, "a text is always committed");
        return true;
    }
};

void writeOne(MemoryFiles& files, InMemory& memory, std::string_view path, std::size_t key,
              std::string text) {
    const bool opened = memory.write(path, keys[key], text);
    const std::string before = files.get(file);
    Values was, is;
    const bool existed = readAll(path, was);
    SectionHandle* handle = OpenSection(file, path, sectionForWriting);
    require(opened == !!handle, "a text has the same sections");
    if (!handle) {
        require(!existed && files.count() == 1 && files.get(file) == before,
                "a failed open leaves the file alone");
        return;
    }
    const bool created = handle->rflg & sectionCreated;
    require(existed != created, "only a missing section is created");
    const std::string data = handle->data.str();
    // A word of a value can stand for a key, so keys whose values are on one line may depend on each other,
    // and one that a word had hidden may appear.
    std::array<bool, keys.size()> shared{};
    for (std::size_t i = 0; i < keys.size(); ++i)
        shared[i] = oneLine(FindKey(handle, keys[i]), FindKey(handle, keys[key]));
    const bool written =
        WriteKey(handle, keys[key], text.data(), keyString, static_cast<int>(text.size()) + 1) == 0;
    const std::string edited = handle->data.str();
    require(written || created || data == edited, "a refused value changes nothing");
    require(CloseSection(handle) == 0 && files.count() == 1, "the commit works and leaves no copy");

    const std::string after = files.get(file);
    require(after == memory.text, "a text becomes the same");
    std::size_t same = 0;
    while (same < std::min(before.size(), after.size()) && before[same] == after[same]) ++same;
    std::size_t tail = 0;
    while (tail < std::min(before.size(), after.size()) - same &&
           before.rbegin()[static_cast<long>(tail)] == after.rbegin()[static_cast<long>(tail)])
        ++tail;
    if (created)
        require(same + tail == before.size(), "a created section only adds");
    else
        require(before.size() - same - tail <= data.size() &&
                    data.size() - edited.size() == before.size() - after.size(),
                "only the section's lines change");
    if (before == after) return;

    require(readAll(path, is), "the section is still there");
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i == key && written)
            require(is[i].value_or("") == text, "a value reads back");
        else if (i != key)
            require(is[i] == was[i] || !was[i] || shared[i] || created, "other keys stay");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    [[maybe_unused]] static const std::FILE* quiet = std::freopen("/dev/null", "w", stdout);
    std::string_view input(reinterpret_cast<const char*>(bytes), count);
    const std::string_view path = takeLine(input);
    const std::string text(takeLine(input));
    if (text.find('\0') != std::string::npos) return 0;
    MemoryFiles files;
    files.put(file, std::string(input));
    InMemory memory{std::string(input), {}};
    for (std::size_t key = 0; key < keys.size(); ++key) writeOne(files, memory, path, key, text);
    writeOne(files, memory, path, 0, "1");
    return 0;
}
