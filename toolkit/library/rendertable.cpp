#include "toolkit/library/rendertable.h"

#include <Xm/BulletinB.h>

XmRenderTable zConvertRenderTable(Widget root, const std::string& name) {
    const Widget holder =
        XtVaCreateWidget("fonts", xmBulletinBoardWidgetClass, root, XtVaTypedArg, XmNlabelRenderTable,
                         XmRString, name.c_str(), static_cast<int>(name.size() + 1), nullptr);
    XmRenderTable table = nullptr;
    XtVaGetValues(holder, XmNlabelRenderTable, &table, nullptr);
    return table;
}
