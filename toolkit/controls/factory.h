// Creates the control of a layout row. Inside the toolkit only.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/controls/dialogunits.h"

// Where the control of a row stands in a window of the layout's size, in pixels.
zRect zPlaceOf(const zDialogUnits& units, const zControlRow& row);

std::unique_ptr<zControl> zCreateControl(Widget board, const zDialogUnits& units, const zControlRow& row);
