#include "ui/config/listedit.h"

#include "toolkit/window/messagebox.h"

#include <fmt/format.h>

std::string unableTo(const char* verb, const std::string& what) {
    return fmt::format("Unable to Dynamically {} {}\nDo you still want to modify Static Configuration?", verb,
                       what);
}

bool dynamicOrStatic(zWindow& window, const std::function<int()>& request, const StaticQuestion& question) {
    if (request && request() == 0) return true;
    return zQuestionBox(window.application(), window.shell(), question.text, question.title);
}
