#include "toolkit/library/menukeys.h"

// Exported by libXm, but not declared in its headers.
extern "C" void _XmSetMenuTraversal(Widget menu, Boolean on);

void zExpectKeys(Widget menu) {
    _XmSetMenuTraversal(menu, True);
}
