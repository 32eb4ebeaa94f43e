#include "app/routine.h"

#include "app/maindlg.h"
#include "change/takeback.h"
#include "config/pdf_io.h"
#include "model/settings.h"
#include "platform/debuglog.h"
#include "platform/linewriter.h"
#include "platform/root.h"
#include "platform/safetext.h"
#include "resources/pictures.h"
#include "toolkit/window/application.h"
#include "ui/config/confdlg.h"
#include "version.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fmt/ranges.h>

namespace {

constexpr char debugOption[] = "-DEBUG", advancedOption[] = "-ADV";

constexpr char usage[] =
    "Usage: tarvolin [option]...\n"
    "Configures and watches the ATM network adapters of this host.\n"
    "\n"
    "  -debug      write progress, request names and request headers to standard error\n"
    "  -adv        start in advanced mode, with the pages of the LAN emulation servers\n"
    "  --help      show this text\n"
    "  --version   show the version\n"
    "\n"
    "Options of X programs; -geometry, -title and -iconic are for the main window, whose size is fixed:\n"
    "\n"
    "  -display DISPLAY   -geometry +X+Y   -title TITLE   -name NAME   -iconic   -xrm RESOURCE\n";

// Answers a question that needs no display.
bool answered(const std::vector<std::string>& arguments) {
    const auto asks = [&](const char* option) { return std::ranges::count(arguments, option) > 0; };
    if (asks("--help"))
        fmt::print("{}", usage);
    else if (asks("--version"))
        fmt::print("tarvolin {}\n", versionNumber);
    else
        return false;
    return true;
}

void nameIgnored(const zApplication& application) {
    for (const std::string& word : application.unusedArguments())
        if (!holdsOption(word, debugOption) && !holdsOption(word, advancedOption))
            fmt::print(stderr, "{}: ignored: \"{}\"\n", application.programName(), platform::escaped(word));
}

}  // namespace

bool holdsOption(const std::string& commandLine, const std::string& text) {
    const auto alike = [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; };
    return std::search(commandLine.begin(), commandLine.end(), text.begin(), text.end(), alike) !=
           commandLine.end();
}

void takeOptions(const std::string& commandLine) {
    if (holdsOption(commandLine, debugOption)) {
        tvlog.attach(platform::standardError());
        tvlog << commandLine << std::endl;
    }
    if (holdsOption(commandLine, advancedOption)) advSettings = 1;
}

int runApplication(const std::string& command, const std::vector<std::string>& arguments) {
    platform::guardStandardStreams();
    if (answered(arguments)) return std::fflush(stdout) == 0 ? 0 : 1;
    takeOptions(fmt::format("{}", fmt::join(arguments, " ")));
    platform::logRootDirectory();

    // Before there is a connection to an X server, since a guard is a process of its own.
    const std::string takenBack = takeOverGuard("tarvolin");
    if (!takenBack.empty()) fmt::print(stderr, "tarvolin: {}\n", takenBack);

    zSetPictures(programPictures());
    zApplication application(command, "Tarvolin", arguments, fallbackResources);
    application.onAbort = AbandonSections;
    application.fitScreen(setupLayout.width, setupLayout.height);  // Statistics is as large
    if (!application.openDisplay()) return 1;
    nameIgnored(application);
    DMainDlg mainWindow(application, mainLayout);
    if (!takenBack.empty()) mainWindow.configuration().note(takenBack + '.');
    return application.run();
}
