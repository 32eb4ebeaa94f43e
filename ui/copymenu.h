// The rows of context menus that copy what a control shows to the clipboard.
#pragma once

#include "toolkit/controls/contextmenu.h"

class zEdit;
class zListBox;
class zTable;

zMenuRows copyMenu(zTable& table);         // the active cell, its row, and all rows with their labels
zMenuRows copyMenu(const zEdit& field);    // its text
zMenuRows copyMenu(const zListBox& list);  // the selected line
