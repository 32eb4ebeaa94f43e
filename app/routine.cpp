#include "app/routine.h"

#include "app/maindlg.h"
#include "config/pdf_io.h"
#include "model/settings.h"
#include "platform/debuglog.h"
#include "platform/linewriter.h"
#include "platform/root.h"
#include "resources/pictures.h"
#include "toolkit/window/application.h"

#include <algorithm>
#include <cctype>
#include <fmt/ranges.h>

bool holdsOption(const std::string& commandLine, const std::string& text) {
    const auto alike = [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; };
    return std::search(commandLine.begin(), commandLine.end(), text.begin(), text.end(), alike) !=
           commandLine.end();
}

void takeOptions(const std::string& commandLine) {
    if (holdsOption(commandLine, "-DEBUG")) {
        tvlog.attach(platform::standardError());
        tvlog << commandLine << std::endl;
    }
    if (holdsOption(commandLine, "-ADV")) advSettings = 1;
}

int runApplication(const std::string& programName, const std::vector<std::string>& commandLine) {
    platform::guardStandardStreams();
    takeOptions(fmt::format("{}", fmt::join(commandLine, " ")));
    platform::logRootDirectory();

    zSetPictures(programPictures());
    zApplication application(programName, "Tarvolin", commandLine, fallbackResources);
    application.onAbort = AbandonSections;
    if (!application.openDisplay()) return 1;
    DMainDlg mainWindow(application, mainLayout);
    return application.run();
}
