#include "toolkit/display/database.h"

#include <cstring>
#include <fmt/format.h>

namespace {

constexpr char bindings[] = {'*', '.'};  // a specifier of the user's may have either

// The type of a value that stands for none: a resource that finds it keeps its default.
constexpr char nothing[] = "Nothing";

Boolean convertNothing(Display*, XrmValue*, Cardinal*, XrmValue*, XrmValue*, XtPointer*) {
    return False;
}

}  // namespace

zDatabase::zDatabase(Display* display) : display_(display), database_(XtDatabase(display)) {
    XtGetApplicationNameAndClass(display, &name_, &class_);
    if (std::strchr(name_, '.')) name_ = class_;  // such a name cannot stand in a specifier
}

const char* zDatabase::entry(const std::string& names, const std::string& classes) const {
    char* type = nullptr;
    XrmValue found{};
    if (!XrmGetResource(database_, fmt::format("{}.{}", name_, names).c_str(),
                        fmt::format("{}.{}", class_, classes).c_str(), &type, &found))
        return nullptr;
    return static_cast<const char*>(static_cast<void*>(found.addr));
}

std::string zDatabase::value(const std::string& names, const std::string& classes) const {
    const char* found = entry(names, classes);
    return found ? found : "";
}

void zDatabase::put(const std::string& specifier, const std::string& value) {
    XrmPutStringResource(&database_, fmt::format("{}{}", class_, specifier).c_str(), value.c_str());
}

void zDatabase::force(const std::string& names, const std::string& value) {
    for (const char binding : bindings)
        XrmPutStringResource(&database_, fmt::format("{}{}{}", name_, binding, names).c_str(), value.c_str());
}

void zDatabase::withhold(const std::string& names, const char* type) {
    static char none[] = "";
    XtAppSetTypeConverter(XtDisplayToApplicationContext(display_), nothing, type, convertNothing, nullptr, 0,
                          XtCacheNone, nullptr);
    XrmValue value{sizeof none, none};
    for (const char binding : bindings)
        XrmPutResource(&database_, fmt::format("{}{}{}", name_, binding, names).c_str(), nothing, &value);
}
