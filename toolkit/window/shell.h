// Placing, closing and destroying shells. Inside the toolkit only.
#pragma once

#include "toolkit/display/widget.h"

// Moves a realized shell to the middle of its screen.
void zCentreShell(Widget shell);

// Maps a realized shell. Window managers learn which program and which process it belongs to.
void zMapShell(Widget shell);

// Calls `asked` when the window manager asks to close the shell, until zDestroyShell.
void zOnCloseRequest(Widget shell, void (*asked)(Widget, void* data, void* event), void* data);

// Destroys a shell with everything below it and frees what the widget library keeps for its windows.
void zDestroyShell(Widget shell);
