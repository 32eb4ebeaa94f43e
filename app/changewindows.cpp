#include "app/changewindows.h"

#include "driver/channel.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "platform/ending.h"
#include "toolkit/window/messagebox.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
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
std::string fileText(const ChangeResult& result) {
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
            text += result.tookAny() ? "\nThe driver keeps what it accepted; the file was not updated."
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

void print(int adapter, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) fmt::print(stderr, "tarvolin: adapter {}: {}\n", adapter + 1, line);
}

std::string withoutTableText(const ChangeResult& result) {
    if (result.withoutTable.empty()) return {};
    return fmt::format("Unable to save the ELAN clients of:\n\n{}\n\nThe parameter file names no "
                       "client table (ElanTbl) for them.",
                       fmt::join(result.withoutTable, "\n"));
}

ChangeOrder unsavedListsOf(const Configuration& configuration, int adapter) {
    return {.adapters = {adapter},
            .settings = false,
            .before = configuration.mine(),
            .driver = static_cast<bool>(ioctlDesc),
            .last = true};
}

}  // namespace

ChangeWindows::ChangeWindows(zWindow& parent, Configuration& configuration, int adapter,
                             std::function<ChangeOrder()> order)
    : parent_(parent), configuration_(configuration), adapter_(adapter), order_(std::move(order)),
      onConnectionLost_(
          std::exchange(parent.application().onConnectionLost, [this] { finishWithoutWindows(); })) {}

ChangeWindows::~ChangeWindows() {
    parent_.application().onConnectionLost = std::move(onConnectionLost_);
}

void ChangeWindows::begin() {
    ChangeOrder order = order_();
    signalling_ = order.changed[asIndex(adapter_)].signalling;
    order.progress = [this](const std::string& doing) { paint(doing); };
    change_.emplace(configuration_, std::move(order));
}

// A lost server must not cut the change off: the rest is done without windows.
void ChangeWindows::paint(const std::string& doing) {
    if (serverLost_) return;
    serverLost_ = !parent_.application().paintBetween([&] {
        if (say_ && !doing.empty()) say_(doing);
    });
}

std::optional<Question> ChangeWindows::run() {
    std::optional<Question> question = change_->run();
    if (serverLost_) zApplication::endWithoutServer();
    return question;
}

void ChangeWindows::carryOut(zWindow& above, Say say) {
    zApplication& application = parent_.application();
    say_ = std::move(say);
    parent_.setCursor(zWatchCursor);
    above.setCursor(zWatchCursor);
    begin();
    while (const std::optional<Question> question = run()) {
        if (say_) say_("");
        const bool ok = zQuestionBox(application, above.shell(), question->text, question->title);
        if (application.ending()) {  // nobody has answered
            change_->finishAlone();
            if (serverLost_) zApplication::endWithoutServer();
            break;
        }
        change_->answer(ok);
    }
    conclude();
    if (platform::endAsked()) printBoxes();
    parent_.setCursor(zArrowCursor);
}

void ChangeWindows::conclude() {
    ChangeResult result = change_->result();
    for (std::string& note : configuration_.takeNotes()) result.notes.push_back(std::move(note));
    boxes_ = {{fileText(result), "Configuration Error"},
              {driverText(result), "Driver Error"},
              {withoutTableText(result), "ELAN Client Error"}};
    if (signalling_ && !result.givenUp)
        boxes_.push_back({"Signalling parameters changed!\nYou will need to manually restart signalling.",
                          "Configuration Change"});
    for (Box& box : boxes_) box.text.erase(box.text.find_last_not_of('\n') + 1);
    std::erase_if(boxes_, [](const Box& box) { return box.text.empty(); });
    concluded_ = true;
}

void ChangeWindows::showBoxes() {
    zApplication& application = parent_.application();
    while (!boxes_.empty()) {
        zMessageBox(application, parent_.shell(), zMessageStyle::warning, boxes_.front().text,
                    boxes_.front().title);
        if (application.ending())  // nobody has read it
            printBoxes();
        else
            boxes_.pop_front();
    }
}

void ChangeWindows::printBoxes() {
    if (!std::exchange(printed_, true) && change_->result().givenUp && change_->result().changed)
        print(adapter_,
              fmt::format("the changes are not saved, since the configuration is being changed by {}",
                          configuration_.holder()));
    for (; !boxes_.empty(); boxes_.pop_front()) print(adapter_, boxes_.front().text);
}

void ChangeWindows::finishWithoutWindows() {
    serverLost_ = true;
    if (!concluded_) {
        if (!change_) begin();
        change_->finishAlone();
        conclude();
    }
    printBoxes();
    saveUnsavedLists(configuration_);
}

void saveUnsavedListsAsking(zWindow& parent, Configuration& configuration) {
    for (int adapter = 0; adapter < adapterCount; ++adapter) {
        if (configuration.unsavedLists(adapter).empty()) continue;
        ChangeWindows windows(parent, configuration, adapter,
                              [&] { return unsavedListsOf(configuration, adapter); });
        windows.carryOut(parent);
        windows.showBoxes();
    }
}

void saveUnsavedLists(Configuration& configuration, std::chrono::milliseconds patience) {
    for (int adapter = 0; adapter < adapterCount; ++adapter) {
        if (!configuration.unsavedLists(adapter).empty()) {
            AdapterChange change(configuration, unsavedListsOf(configuration, adapter));
            change.finishAlone(patience);
            for (const std::string& note : change.result().notes) print(adapter, note);
        }
        for (const std::string& name : configuration.listsWithoutFile(adapter))
            print(adapter, fmt::format("the clients of {0} are not saved: the parameter file names no client "
                                       "table (ElanTbl) for {0}",
                                       name));
        for (const std::string& name : configuration.unsavedLists(adapter))
            print(adapter, fmt::format("the list of {} is not saved, the driver has it", name));
    }
    configuration.noteLostDriver();
    for (const std::string& note : configuration.takeNotes()) fmt::print(stderr, "tarvolin: {}\n", note);
}
