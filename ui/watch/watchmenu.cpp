#include "ui/watch/watchmenu.h"

#include "ui/watch/conditions.h"

zMenuRow watchForRow(zApplication& application, const std::optional<metrics::Subject>& subject,
                     const char* keys) {
    return {.label = "Watch for...",
            .action = [&application, subject] { Conditions::of(application)->askFor(*subject); },
            .enabled = subject && metrics::canBeWatched(*subject->metric),
            .keys = keys};
}

zMenuRow watchedConditionsRow(zApplication& application) {
    return {.label = "Watched Conditions...",
            .action = [&application] { Conditions::of(application)->list(); },
            .keys = "Ctrl+L"};
}
