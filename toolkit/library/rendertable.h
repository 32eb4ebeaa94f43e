// Fonts from the X resources. Inside the toolkit only.
#pragma once

#include <Xm/Xm.h>
#include <string>

// The render table of one font that the X resources describe under this name. Motif's converter makes a new
// one for each shell that asks for the name and never frees it: convert each name once per display.
XmRenderTable zConvertRenderTable(Widget root, const std::string& name);
