// Creates the control of a layout row. Inside the toolkit only.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/controls/dialogunits.h"

std::unique_ptr<zControl> zCreateControl(Widget board, const zDialogUnits& units, const zControlRow& row);
