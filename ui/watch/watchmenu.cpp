#include "ui/watch/watchmenu.h"

#include "ui/watch/conditions.h"

zMenuRow watchForRow(zApplication& application, const std::optional<metrics::Subject>& subject,
                     const char* keys) {
    return {.label = "Watch for...",
            .action = [&application, subject] { Conditions::of(application)->askFor(*subject); },
            .enabled = subject && metrics::canBeWatched(*subject->metric),
            .keys = keys};
}

void watchForAny(zApplication& application, const metrics::Place& place) {
    Conditions::of(application)->askFor(place);
}

zMenuRow watchedConditionsRow(zApplication& application) {
    return {.label = "Watched Conditions...",
            .action = [&application] { Conditions::of(application)->list(); },
            .keys = "Ctrl+L"};
}
