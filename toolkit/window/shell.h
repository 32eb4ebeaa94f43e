// Placing, closing and destroying shells. Inside the toolkit only.
#pragma once

#include "toolkit/display/widget.h"

// Where a shell has its upper left corner, in pixels of the screen.
struct zSpot {
    int x = 0, y = 0;
};

// Moves a realized shell to the middle of its screen.
zSpot zCentreShell(Widget shell);

// Moves a realized shell right and down from where another one stands, at least so many pixels in one of the
// directions, as far as there is room on the screen.
zSpot zPlaceBeside(Widget shell, const zSpot& other, int away);

// Moves a realized shell to the lower edge of another one, below it as far as there is room on the screen.
zSpot zPlaceBelow(Widget shell, Widget other);

// Maps a realized shell. Window managers learn its title, and which program and process it belongs to.
void zMapShell(Widget shell);

// Calls `asked` when the window manager asks to close the shell, until zDestroyShell.
void zOnCloseRequest(Widget shell, void (*asked)(Widget, void* data, void* event), void* data);

// Destroys a shell with everything below it and frees what the widget library keeps for its windows.
void zDestroyShell(Widget shell);
