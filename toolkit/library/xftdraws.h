// The Xft drawing contexts that the widget library creates, one per window, and never frees.
#pragma once

#include "toolkit/display/widget.h"

// Frees those of a widget and of everything below it. To be called before a shell is destroyed.
void zFreeXftDraws(Widget widget);
