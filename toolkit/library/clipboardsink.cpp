// Texts that cannot be edited take nothing from the clipboard; fields ask for it themselves.
#include <Xm/TransferP.h>
#include <Xm/Xm.h>

// Replaces the function of libXm, which every text calls on Shift+Insert, also one that cannot be edited: it
// waits in a loop of its own for whoever owns the clipboard, and crashes when a second paste, or the end of
// the window, comes meanwhile.
extern "C" Boolean XmeClipboardSink(Widget, XtEnum, XtPointer) {
    return False;
}
