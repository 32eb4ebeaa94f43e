// Nothing can be dropped on the windows.
#include <Xm/DragDrop.h>
#include <Xm/Xm.h>

// Replaces the function of libXm, which agrees with the other programs on numbers for what each control
// takes: three round trips for each kind of control, and a second connection.
extern "C" void XmDropSiteRegister(Widget, ArgList, Cardinal) {}
