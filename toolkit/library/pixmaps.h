// Sizes of pixmaps. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Tells Motif the size of a pixmap of the widget's depth, in pixels. It would ask the server when a control
// shows the pixmap first.
void zKnowPixmap(Widget widget, Pixmap pixmap, unsigned width, unsigned height);
