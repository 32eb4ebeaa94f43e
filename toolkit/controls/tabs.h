// The tabs of notebooks and tab strips. Inside the toolkit only.
#pragma once

#include "toolkit/controls/rowwidget.h"

// Creates a tab stack. Arrow keys move between tabs, the space bar selects one. Return and Escape press the
// buttons of the window, as in its other controls.
Widget zMakeTabs(Widget board, const zControlRow& row, zResources& resources);
