// The floor of start-up time and memory: a shell, a board, a label and a button in the tool's bold font.
#include <Xm/BulletinB.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/Xm.h>

namespace {

const char* const resources[] = {
    "Tarvolin*bold*fontType: FONT_IS_XFT", "Tarvolin*bold*fontName: Liberation Sans",
    "Tarvolin*bold*fontStyle: Bold",       "Tarvolin*bold*fontSize: 12",
    "Tarvolin*renderTable: bold",          nullptr};

}  // namespace

int main(int argc, char** argv) {
    XtAppContext context = nullptr;
    const Widget shell = XtVaAppInitialize(&context, "Tarvolin", nullptr, 0, &argc, argv,
                                           const_cast<String*>(resources), nullptr);
    const Widget board = XtVaCreateManagedWidget("board", xmBulletinBoardWidgetClass, shell, XmNwidth, 685,
                                                 XmNheight, 292, nullptr);
    XtVaCreateManagedWidget("A label", xmLabelWidgetClass, board, XmNx, 20, XmNy, 20, nullptr);
    XtVaCreateManagedWidget("A button", xmPushButtonWidgetClass, board, XmNx, 20, XmNy, 80, nullptr);
    XtRealizeWidget(shell);
    XtAppMainLoop(context);
}
