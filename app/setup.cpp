#include "app/setup.h"

#include "app/apply.h"
#include "change/adapterchange.h"
#include "change/sentrequest.h"
#include "driver/channel.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/ending.h"
#include "toolkit/window/messagebox.h"
#include "ui/config/confdlg.h"

#include <deque>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <functional>
#include <optional>
#include <sstream>
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

// What the files did not take. The last sentence is there only if something was changed and no change is in
// the files.
std::string fileText(const ChangeResult& result, bool accepted) {
    std::string text;
    // Where nothing was changed, an adapter without a section misses nothing.
    if (!result.failures.empty() && (result.changed || !result.onlySectionsMissing())) {
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

// What is to be said of a change, each in a box of its own, or without windows on standard error.
struct Box {
    std::string text;
    const char* title;
};

std::deque<Box> boxesOf(const ChangeResult& result, bool accepted, bool signalling) {
    std::deque<Box> boxes{{fileText(result, accepted), "Configuration Error"},
                          {driverText(result), "Driver Error"}};
    if (!result.withoutTable.empty())
        boxes.push_back(
            {fmt::format("Unable to save the ELAN clients of:\n\n{}\n\nThe parameter file names no "
                         "client table (ElanTbl) for them.",
                         fmt::join(result.withoutTable, "\n")),
             "ELAN Client Error"});
    if (signalling && !result.givenUp)
        boxes.push_back({"Signalling parameters changed!\nYou will need to manually restart signalling.",
                         "Configuration Change"});
    for (Box& box : boxes) box.text.erase(box.text.find_last_not_of('\n') + 1);
    std::erase_if(boxes, [](const Box& box) { return box.text.empty(); });
    return boxes;
}

void print(int adapter, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) fmt::print(stderr, "tarvolin: adapter {}: {}\n", adapter + 1, line);
}

void takeListsOver() {
    MapXferBufferPVCsToData();
    MapXferBufferELANsToData();
}

}  // namespace

void setUpAdapter(zWindow& window, Configuration& configuration) {
    zApplication& application = window.application();
    const int adapter = currentAdapter;
    configuration.readAgain(adapter);
    MapDataToXferBuffer();
    ChangeOrder order{.adapter = adapter, .before = atmDevices};
    ServiceSet changed;
    const unsigned long before = SetupIoctlDesc.acceptedChanges();
    bool accepted = false;
    std::optional<DConfigDlg> dialog(std::in_place, window);
    SetupIoctlDesc.onChange = [&order](const SentChange& sent) {
        order.requests.push_back(sentRequest(sent));
    };
    std::optional<AdapterChange> change;
    const auto begin = [&] {
        SetupIoctlDesc.onChange = nullptr;
        order.settings = dialog->okFlag();
        if (order.settings)
            order.changed = MapXferBufferToData();
        else
            takeListsOver();
        changed = order.changed;
        order.driver = ioctlDesc || SetupIoctlDesc;  // also a driver that came while the dialog was open
        order.display = application.displayName();
        accepted = SetupIoctlDesc.acceptedChanges() != before;
        change.emplace(configuration, std::move(order));
    };

    std::deque<Box> boxes;  // that nobody has seen yet
    bool concluded = false, printed = false;
    const auto conclude = [&] {
        ChangeResult result = change->result();
        for (std::string& note : configuration.takeNotes()) result.notes.push_back(std::move(note));
        boxes = boxesOf(result, accepted || result.tookAny, changed.signalling);
        concluded = true;
    };
    const auto printBoxes = [&] {
        if (!std::exchange(printed, true) && change->result().givenUp && change->result().changed)
            print(adapter,
                  fmt::format("the changes are not saved, since the configuration is being changed by {}",
                              configuration.holder()));
        for (; !boxes.empty(); boxes.pop_front()) print(adapter, boxes.front().text);
    };
    const WithoutWindows rest(application, [&] {
        if (!concluded) {
            if (!change) begin();
            change->finishAlone();
            conclude();
        }
        printBoxes();
        saveUnsavedLists(configuration);
    });

    dialog->runModal();
    window.setCursor(zWatchCursor);
    begin();
    while (const std::optional<Question> question = change->run()) {
        const bool ok = zQuestionBox(application, window.shell(), question->text, question->title);
        if (application.ending()) {  // nobody has answered
            change->finishAlone();
            break;
        }
        change->answer(ok);
    }
    conclude();
    if (platform::endAsked()) printBoxes();
    window.setCursor(zArrowCursor);
    dialog.reset();
    while (!boxes.empty()) {
        zMessageBox(application, window.shell(), zMessageStyle::warning, boxes.front().text,
                    boxes.front().title);
        if (application.ending())  // nobody has read it
            printBoxes();
        else
            boxes.pop_front();
    }
}

void saveUnsavedLists(Configuration& configuration) {
    for (int adapter = 0; adapter < adapterCount; ++adapter) {
        if (configuration.unsavedLists(adapter).empty()) continue;
        AdapterChange change(configuration, {.adapter = adapter,
                                             .settings = false,
                                             .before = configuration.mine(),
                                             .driver = static_cast<bool>(ioctlDesc)});
        change.finishAlone();
        for (const std::string& note : change.result().notes) print(adapter, note);
        for (const std::string& name : configuration.unsavedLists(adapter))
            print(adapter, fmt::format("the list of {} is not saved, the driver has it", name));
    }
    configuration.noteLostDriver();
    for (const std::string& note : configuration.takeNotes()) fmt::print(stderr, "tarvolin: {}\n", note);
}
