// What every shell needs at its beginning and its end. Inside the toolkit only.
#pragma once

#include "toolkit/widget.h"

#include <string>

// Arguments for XtVaCreateWidget that give a bulletin board and its children the named render table.
#define zTypedFont(resource, name)                                                                           \
    XtVaTypedArg, resource, XmRString, name, static_cast<int>(std::char_traits<char>::length(name) + 1)
#define zTypedFonts(name)                                                                                    \
    zTypedFont(XmNlabelRenderTable, name), zTypedFont(XmNbuttonRenderTable, name),                           \
        zTypedFont(XmNtextRenderTable, name)

// Puts a realized shell into the middle of its screen.
void zCentre(Widget shell);

// Destroys a shell with everything below it and gives back what the widget library keeps per window.
void zDestroyShell(Widget shell);
