#include "toolkit/display/database.h"

#include <cstring>
#include <fmt/format.h>

zDatabase::zDatabase(Display* display) : database_(XtDatabase(display)) {
    XtGetApplicationNameAndClass(display, &name_, &class_);
    if (std::strchr(name_, '.')) name_ = class_;  // such a name cannot stand in a specifier
}

std::string zDatabase::value(const std::string& names, const std::string& classes) const {
    char* type = nullptr;
    XrmValue found{};
    if (!XrmGetResource(database_, fmt::format("{}.{}", name_, names).c_str(),
                        fmt::format("{}.{}", class_, classes).c_str(), &type, &found) ||
        !found.addr)
        return {};
    return static_cast<const char*>(static_cast<void*>(found.addr));
}

void zDatabase::put(const std::string& specifier, const std::string& value) {
    XrmPutStringResource(&database_, fmt::format("{}{}", class_, specifier).c_str(), value.c_str());
}

void zDatabase::force(const std::string& names, const std::string& value) {
    XrmPutStringResource(&database_, fmt::format("{}*{}", name_, names).c_str(), value.c_str());
}
