// Keys of characters beyond ASCII. Inside the toolkit only.
#pragma once

#include <X11/X.h>
#include <X11/keysym.h>

// Whether a key, with these modifiers, is for such a character: XmTextField drops those that its input method
// has no text for, and says nothing.
inline bool zIsForeign(KeySym symbol, unsigned modifiers) {
    constexpr KeySym beyondAscii = XK_nobreakspace, functionKeys = 0xfd00, unicode = 0x01000000,
                     unicodePlanes = 0xff000000;
    return !(modifiers & (ControlMask | Mod1Mask)) &&
           ((symbol >= beyondAscii && symbol < functionKeys) || (symbol & unicodePlanes) == unicode);
}
