// Motion events over controls. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Lets the motion events of a realized control and its children reach the board below. Motif's controls do
// not propagate them.
void zPropagateMotion(Widget control);
