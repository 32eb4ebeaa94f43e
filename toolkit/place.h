// What every shell needs at its beginning and its end. Inside the toolkit only.
#pragma once

#include "toolkit/widget.h"

// Arguments for XtVaCreateWidget that give a bulletin board and its children the font of a layout.
#define zFonts(parent, font)                                                                                 \
    XmNlabelRenderTable, zKept::of(XtDisplay(parent)).renderTable(parent, font), XmNbuttonRenderTable,       \
        zKept::of(XtDisplay(parent)).renderTable(parent, font), XmNtextRenderTable,                          \
        zKept::of(XtDisplay(parent)).renderTable(parent, font)

// Puts a realized shell into the middle of its screen.
void zCentre(Widget shell);

// Calls this when the window manager asks to close the shell, until zDestroyShell.
void zHearClose(Widget shell, void (*asked)(Widget, void* data, void* event), void* data);

// Destroys a shell with everything below it and gives back what the widget library keeps per window.
void zDestroyShell(Widget shell);
