// The check of a parameter file and of a list that it names: findings, whatever is in them. The first line
// says how many bytes of the rest are the parameter file.
#include "config/filecheck.h"
#include "../support/memoryfiles.h"
#include "config/driverpdf.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <set>

namespace {

constexpr int rulesFrom = 1, rulesTo = 299;

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    engineOutput = [](const std::string&) {};
    const std::string_view input(reinterpret_cast<const char*>(bytes), count);
    const std::size_t begin = std::min(input.find('\n'), input.size());
    std::size_t length = input.size();
    std::from_chars(input.data(), input.data() + begin, length);
    const std::string_view rest = input.substr(std::min(begin + 1, input.size()));
    const std::string_view parameters = rest.substr(0, length);
    MemoryFiles files;
    files.put(PdfEdit::parameterFile, std::string(parameters));
    files.put("/etc/atm/list", std::string(rest.substr(parameters.size())));
    AtmDevices devices;
    DriverPdfEdit editor(nullptr, false, devices);
    require(editor.ReadPdf(), "the file can be read");
    std::set<std::pair<int, std::string>> unread;
    const std::vector<PlacedFinding> found = CheckFiles(editor.files(), devices);
    for (const auto& [adapter, finding, file, line] : found)
        if (finding.number == 119) unread.emplace(adapter, finding.path);
    for (const auto& [adapter, finding, file, line] : found) {
        const std::string& text = editor.files().now(file);
        require(finding.number >= rulesFrom && finding.number <= rulesTo, "a rule has a number");
        require(!finding.message.empty() && !file.empty(), "a finding says what and where");
        require(line >= 1 && line <= 1 + std::count(text.begin(), text.end(), '\n'), "a line is there");
        require(adapter < adapterCount && (adapter >= 0 || finding.number == 119), "a finding has a place");
        require(finding.number == 119 ||
                    !unread.contains({adapter, finding.path.substr(0, finding.path.find('.'))}),
                "nothing else is said of what is not read");
    }
    return 0;
}
