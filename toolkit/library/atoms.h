// Atoms that the libraries ask for one by one. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// Asks for all of them together, so that Xlib knows them when they are wanted.
void zInternAtoms(Display* display);
