#include "toolkit/library/rendertable.h"

#include <Xm/BulletinB.h>

XmRenderTable zConvertRenderTable(Widget root, const std::string& name) {
    const Widget holder =
        XtVaCreateWidget("fonts", xmBulletinBoardWidgetClass, root, XtVaTypedArg, XmNlabelRenderTable,
                         XmRString, name.c_str(), static_cast<int>(name.size() + 1), nullptr);
    XmRenderTable table = nullptr;
    XtVaGetValues(holder, XmNlabelRenderTable, &table, nullptr);
    // Resources for no font in particular, as "*fontSize", make one more rendition, which has no font then: a
    // row of tabs would crash on it.
    XmStringTag* tags = nullptr;
    const int count = XmRenderTableGetTags(table, &tags);
    for (int i = 0; i < count; ++i) {
        if (name != tags[i]) table = XmRenderTableRemoveRenditions(table, &tags[i], 1);
        XtFree(tags[i]);
    }
    XtFree(reinterpret_cast<char*>(tags));
    return table;
}
