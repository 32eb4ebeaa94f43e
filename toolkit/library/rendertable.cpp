#include "toolkit/library/rendertable.h"

#include <Xm/BulletinB.h>
#include <algorithm>
#include <span>

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
    const std::span<XmStringTag> all(tags, static_cast<std::size_t>(count));
    // The widget has the table, and frees it: what is to be different is a copy.
    if (const auto described = std::ranges::find(all, name); count > 1 && described != all.end())
        table = XmRenderTableCopy(table, &*described, 1);
    for (XmStringTag tag : all) XtFree(tag);
    XtFree(reinterpret_cast<char*>(tags));
    return table;
}
