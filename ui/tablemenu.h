// The rows of a table's context menu about what it shows: sorting, hiding columns, finding.
#pragma once

#include "toolkit/controls/contextmenu.h"

class zTable;

// The column meant is that of the label where the menu came up, or else of the active cell.
zMenuRows viewMenu(zTable& table);
