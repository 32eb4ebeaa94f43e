#include "ui/config/listedit.h"

#include "toolkit/messagebox.h"

bool dynamicOrStatic(zWindow& window, const std::function<int()>& request, const StaticQuestion& question) {
    if (request && request() == 0) return true;
    return zQuestionBox(window.application(), window.shell(), question.text, question.title);
}
