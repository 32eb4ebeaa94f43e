// The XftDraw objects that Motif creates, one per window, and never frees. Inside the toolkit only.
//
// This and the other files of the folder make up for what the libraries do; doc/libraries.md lists them with
// the symptom, and with what would make them unnecessary.
#pragma once

#include <X11/Intrinsic.h>

using XftDraw = struct _XftDraw;

// The one of a realized widget's window.
XftDraw* zXftDrawOf(Widget widget);

// Frees those of a widget and of everything below it. Call it before a shell is destroyed.
void zFreeXftDraws(Widget widget);
