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
    const bool described = std::ranges::find(all, name) != all.end();
    for (XmStringTag tag : all) {
        if (described && name != tag) table = XmRenderTableRemoveRenditions(table, &tag, 1);
        XtFree(tag);
    }
    XtFree(reinterpret_cast<char*>(tags));
    return table;
}
