// Repainting of widgets. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Has a widget painted as a whole whenever a part of it comes to light. Motif's tab boxes draw all their
// texts then, also over those that have been there, which makes them look bold.
void zRepaintWhole(Widget widget);
