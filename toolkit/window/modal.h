// The nested loop of a modal dialog. Inside the toolkit only.
#pragma once

#include "toolkit/window/application.h"

// A dialog shell below `parent`, not shown yet.
Widget zCreateModalShell(const char* name, Widget parent);

// Shows the realized shell with the board in it, in the middle of the screen, until `done` is set or the
// application ends; takes it off the screen then. Windows that were there before take no input meanwhile.
void zRunModal(zApplication& application, Widget shell, Widget board, const bool& done);

// A modal dialog over this window holds back what the window manager asks of it, too. The dialog is raised then: it can
// be behind the window.
bool zHeldBack(Widget shell);
