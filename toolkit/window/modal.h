// The nested loop of a modal dialog. Inside the toolkit only.
#pragma once

#include "toolkit/window/application.h"

// Creates a dialog shell, child of `parent`, not mapped yet.
Widget zCreateModalShell(const char* name, Widget parent);

// Shows a realized shell and its board in the middle of the screen until `done` is set or the application
// ends. Meanwhile the other windows take no input. The caller hides it then. Should another client destroy
// its window, it is closed as if a window manager had asked for that.
void zRunModal(zApplication& application, Widget shell, Widget board, const bool& done);

// Takes it off the screen. To be called before it is destroyed, which within a callback is deferred to the
// callback's end.
void zHideModal(Widget shell, Widget board);

// True while a modal dialog is open that `shell` neither is nor belongs to; it is then raised: requests of
// the window manager for `shell` are to be ignored.
bool zBlockedByModal(Widget shell);

// F1 in the board is F1 in the window of the shell `parent`, which the dialog is about.
void zPassHelp(Widget board, Widget parent);
