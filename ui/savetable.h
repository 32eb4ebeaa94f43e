// Writing what a table shows into a file.
#pragma once

#include "toolkit/controls/contextmenu.h"

#include <string>

class zApplication;
class zTable;

// The row "Save Table..." of its menu. Asks for the file's name, whose end says the form (tabletext.h), and
// replaces or creates the file as a whole; a failure is told in a box. All must live as long as the menu.
zMenuRow saveTableRow(zApplication& application, zTable& table);
