// Colours that follow the user's. Inside the toolkit only.
#pragma once

struct _XDisplay;  // Xlib's Display

// Where the user's foreground is lighter than the background, the light colours that the resources have for
// fields, tables, selected lines and tooltips would leave their texts unreadable: those that the user has not
// set are mixed of the two instead. To be called before the first widget is made.
void zFollowColours(_XDisplay* display);
