#include "app/firstfile.h"

#include "change/firstfile.h"
#include "toolkit/window/messagebox.h"

#include <fmt/format.h>
#include <numeric>

void offerFirstFile(zWindow& window, Configuration& configuration, const std::vector<int>& adapters) {
    if (!parameterFileIsMissing()) return;
    constexpr const char* title = "Configuration Error";
    const std::string question =
        fmt::format("There is no {}.\nWrite one with a section for each adapter?", PdfEdit::parameterFile);
    if (!zQuestionBox(window.application(), window.shell(), question, title)) return;
    std::vector<int> all(adapterCount);
    std::iota(all.begin(), all.end(), 0);
    window.setCursor(zWatchCursor);  // somebody else may hold the lock
    const auto failure = writeFirstFile(configuration, adapters.empty() ? all : adapters);
    window.setCursor(zArrowCursor);
    if (failure)
        zMessageBox(
            window.application(), window.shell(), zMessageStyle::warning,
            fmt::format("Unable to write the configuration:\n\n{}: {}", failure->file, failure->reason),
            title);
}
