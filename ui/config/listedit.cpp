#include "ui/config/listedit.h"

#include "toolkit/window/messagebox.h"

#include <fmt/format.h>

bool agreesToStatic(zWindow& window, const char* verb, const std::string& what, const char* title) {
    return zQuestionBox(
        window.application(), window.shell(),
        fmt::format("Unable to Dynamically {} {}\nDo you still want to modify Static Configuration?", verb,
                    what),
        title);
}
