#include "toolkit/library/atoms.h"

#include <array>

void zInternAtoms(Display* display) {
    // Of the window manager's properties, of Motif's key bindings, of its text fields, and of selections.
    static const char* const names[] = {
        "WM_LOCALE_NAME",
        "WM_CLIENT_LEADER",
        "_NET_WM_ICON",
        "_NET_WM_PID",
        "_NET_WM_NAME",
        "_NET_WM_ICON_NAME",
        "_MOTIF_BINDINGS",
        "_MOTIF_DEFAULT_BINDINGS",
        "COMPOUND_TEXT",
        "TEXT",
        "UTF8_STRING",
        "STRING",
        "INCR",
        "MULTIPLE",
        "TIMESTAMP",
        "_XT_SELECTION_0",
        "_MOTIF_WM_INFO",
        "Customize Data:0",
    };
    std::array<Atom, XtNumber(names)> atoms{};
    XInternAtoms(display, const_cast<char**>(names), static_cast<int>(atoms.size()), False, atoms.data());
}
