// The tabs of notebooks and tab strips. Inside the toolkit only.
#pragma once

#include "toolkit/controls/rowwidget.h"

// Makes the tabs' widget; `resources` begins with its place. The arrow keys go from tab to tab, the space bar
// selects one; Return and Escape are the window's, as everywhere in it.
Widget zMakeTabs(Widget board, const zControlRow& row, zResources& resources);
