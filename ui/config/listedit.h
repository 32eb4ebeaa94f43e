// List edits of the configuration pages: the running driver first, the static configuration on consent.
#pragma once

#include "toolkit/window/window.h"

#include <functional>
#include <string>

// What the user is asked when the driver is not there or refuses.
struct StaticQuestion {
    std::string text;
    const char* title;
};

// The question's text: what was tried, and whether the static configuration shall be changed all the same.
std::string unableTo(const char* verb, const std::string& what);

// Sends the request, if there is a driver to send it to (an empty function: there is none). True when it
// succeeded, or when the user agrees to change the static configuration only.
bool dynamicOrStatic(zWindow& window, const std::function<int()>& request, const StaticQuestion& question);
