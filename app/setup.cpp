#include "app/setup.h"

#include "app/apply.h"
#include "change/adapterchange.h"
#include "change/sentrequest.h"
#include "driver/channel.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "toolkit/window/messagebox.h"
#include "ui/config/confdlg.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <functional>
#include <optional>
#include <utility>

namespace {

// A section of a longer text: its title and its lines.
std::string paragraph(const std::string& title, const std::vector<std::string>& lines) {
    constexpr std::size_t most = 20;
    std::string text = title + "\n\n";
    for (std::size_t i = 0; i < lines.size() && i < most; ++i) text += lines[i] + "\n";
    if (lines.size() > most) text += fmt::format("and {} more\n", lines.size() - most);
    return text;
}

bool bothers(const ChangeResult& result) {
    return !result.failures.empty() && (result.changed || !result.onlySectionsMissing());
}

// What the files did not take. The last sentence is there only if something was changed and no change is in
// the files.
std::string fileText(const ChangeResult& result, bool accepted) {
    std::string text;
    if (bothers(result)) {
        std::vector<std::string> lines;
        for (const SaveFailure& failure : result.failures)
            lines.push_back(failure.file + ": " + failure.reason);
        text = paragraph("Unable to save the configuration:", lines);
        if (result.save.putBack) text += "\nThe files that were replaced already were put back.";
        if (result.save.state == SaveOutcome::State::unfinished)
            text += "\nSome files are new already; the others will be when the configuration is used next.";
        else if (result.changed && !result.wrote)
            text += accepted ? "\nThe driver keeps what it accepted; the file was not updated."
                             : "\nThe change is not in the file.";
    }
    if (result.notes.empty()) return text;
    return text + (text.empty() ? "" : "\n\n") + paragraph("About the files:", result.notes);
}

std::string driverText(const ChangeResult& result) {
    if (result.driver.empty()) return {};
    return paragraph("The driver did not take everything:", result.driver) +
           (result.wrote ? "\nThe file has the change." : "\nThe file was not updated.");
}

// Finishes what was begun when the connection to the X server is lost.
class WithoutWindows {
  public:
    WithoutWindows(zApplication& application, std::function<void()> finish)
        : application_(application), before_(std::exchange(application.onConnectionLost, std::move(finish))) {
    }
    ~WithoutWindows() { application_.onConnectionLost = std::move(before_); }
    WithoutWindows(const WithoutWindows&) = delete;
    WithoutWindows& operator=(const WithoutWindows&) = delete;

  private:
    zApplication& application_;
    std::function<void()> before_;
};

// When nobody could be asked, or shown anything.
void sayWithoutWindows(const ChangeResult& result, const Configuration& configuration) {
    if (result.givenUp && result.changed)
        fmt::print(stderr,
                   "tarvolin: the changes are not saved, since the configuration is being changed by {}\n",
                   configuration.holder());
    for (const auto* sentences : {&result.driver, &result.notes})
        for (const std::string& sentence : *sentences) fmt::print(stderr, "tarvolin: {}\n", sentence);
    if (!bothers(result)) return;
    for (const SaveFailure& failure : result.failures)
        fmt::print(stderr, "tarvolin: {}: {}\n", failure.file, failure.reason);
}

void takeListsOver() {
    MapXferBufferPVCsToData();
    MapXferBufferELANsToData();
}

}  // namespace

void setUpAdapter(zWindow& window, Configuration& configuration) {
    const auto warn = [&window](const std::string& text, const char* title) {
        const std::size_t end = text.find_last_not_of('\n');
        if (end != text.npos)
            zMessageBox(window.application(), window.shell(), zMessageStyle::warning, text.substr(0, end + 1),
                        title);
    };
    ChangeResult result;
    ServiceSet changed;
    bool accepted = false;
    {
        configuration.readAgain(currentAdapter);
        MapDataToXferBuffer();
        ChangeOrder order{.adapter = currentAdapter, .before = atmDevices};
        const unsigned long before = SetupIoctlDesc.acceptedChanges();
        DConfigDlg dialog(window);
        SetupIoctlDesc.onChange = [&order](const SentChange& sent) {
            order.requests.push_back(sentRequest(sent));
        };
        std::optional<AdapterChange> change;
        const auto begin = [&] {
            SetupIoctlDesc.onChange = nullptr;
            order.settings = dialog.okFlag();
            if (order.settings)
                order.changed = MapXferBufferToData();
            else
                takeListsOver();
            changed = order.changed;
            order.driver = ioctlDesc || SetupIoctlDesc;  // which came while the dialog was open
            order.display = window.application().displayName();
            accepted = SetupIoctlDesc.acceptedChanges() != before;
            change.emplace(configuration, std::move(order));
        };
        const WithoutWindows rest(window.application(), [&] {
            if (!change) begin();
            change->finishAlone();
            sayWithoutWindows(change->result(), configuration);
            saveUnsavedLists(configuration);
        });
        dialog.runModal();
        window.setCursor(zWatchCursor);
        begin();
        while (const std::optional<Question> question = change->run()) {
            const bool ok =
                zQuestionBox(window.application(), window.shell(), question->text, question->title);
            if (window.application().ending()) {  // nobody has answered
                change->finishAlone();
                break;
            }
            change->answer(ok);
        }
        result = change->result();
        for (std::string& note : configuration.takeNotes()) result.notes.push_back(std::move(note));
        if (window.application().ending()) sayWithoutWindows(result, configuration);
        accepted |= result.tookAny;
        window.setCursor(zArrowCursor);
    }
    warn(fileText(result, accepted), "Configuration Error");
    warn(driverText(result), "Driver Error");
    if (!result.withoutTable.empty())
        warn(fmt::format(
                 "Unable to save the ELAN clients of:\n\n{}\n\nThe parameter file names no client table "
                 "(ElanTbl) for them.",
                 fmt::join(result.withoutTable, "\n")),
             "ELAN Client Error");
    if (changed.signalling && !result.givenUp)
        warn("Signalling parameters changed!\nYou will need to manually restart signalling.",
             "Configuration Change");
}

void saveUnsavedLists(Configuration& configuration) {
    for (int adapter = 0; adapter < adapterCount; ++adapter) {
        if (configuration.unsavedLists(adapter).empty()) continue;
        AdapterChange change(configuration, {.adapter = adapter,
                                             .settings = false,
                                             .before = configuration.mine(),
                                             .driver = static_cast<bool>(ioctlDesc)});
        change.finishAlone();
        for (const std::string& note : change.result().notes)
            fmt::print(stderr, "tarvolin: adapter {}: {}\n", adapter + 1, note);
        for (const std::string& name : configuration.unsavedLists(adapter))
            fmt::print(stderr, "tarvolin: adapter {}: the list of {} is not saved, the driver has it\n",
                       adapter + 1, name);
    }
    configuration.noteLostDriver();
    for (const std::string& note : configuration.takeNotes()) fmt::print(stderr, "tarvolin: {}\n", note);
}
