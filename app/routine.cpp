#include "app/routine.h"

#include "app/maindlg.h"
#include "config/pdf_io.h"
#include "model/settings.h"
#include "platform/debuglog.h"
#include "platform/root.h"
#include "resources/pictures.h"
#include "toolkit/application.h"

#include <algorithm>
#include <cctype>
#include <fmt/ranges.h>
#include <unistd.h>

bool holdsOption(const std::string& commandLine, const std::string& text) {
    const auto alike = [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; };
    return std::search(commandLine.begin(), commandLine.end(), text.begin(), text.end(), alike) !=
           commandLine.end();
}

int runApplication(const std::string& programName, const std::vector<std::string>& commandLine) {
    const std::string whole = fmt::format("{}", fmt::join(commandLine, " "));
    if (holdsOption(whole, "-DEBUG")) {
        tvlog.attach(STDERR_FILENO);
        tvlog << whole << std::endl;
    }
    if (holdsOption(whole, "-ADV")) advSettings = 1;
    platform::logRootDirectory();

    zSetPictures(programPictures());
    zApplication application(programName, "Tarvolin", commandLine, fallbackResources);
    application.onAbort = AbandonSections;
    if (!application.openDisplay()) return 1;
    DMainDlg mainWindow(application, mainLayout);
    return application.run();
}
