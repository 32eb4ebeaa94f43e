#include "toolkit/controls/tabstrip.h"

#include "platform/index.h"
#include "toolkit/controls/tabs.h"

#include <Xm/DrawingA.h>
#include <Xm/TabStack.h>
#include <algorithm>

zTabStrip::zTabStrip(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), place_(place) {
    zResources resources(place);
    resources.set(XmNtabMode, XmTABS_BASIC);
    attach(zMakeTabs(board, row, resources));
    for (const char* item : row.items) {
        const zXmText text(item);
        // Only the tab is visible: its page is one pixel high.
        tabs_.push_back(XtVaCreateManagedWidget("tab", xmDrawingAreaWidgetClass, widget(), XmNtabLabelString,
                                                text.get(), XmNheight, 1, XmNwidth, 1, nullptr));
    }
    listen(XmNtabSelectedCallback, [](zControl& self, void* data) {
        auto& strip = static_cast<zTabStrip&>(self);
        const auto* call = static_cast<XmTabStackCallbackStruct*>(data);
        const auto found = std::find(strip.tabs_.begin(), strip.tabs_.end(), call->selected_child);
        const int position = static_cast<int>(found - strip.tabs_.begin());
        if (found == strip.tabs_.end() || position == strip.selected_) return;
        strip.selected_ = position;
        if (const auto handler = strip.onSelect) handler(position);
    });
}

void zTabStrip::select(int position) {
    if (position < 0 || position >= count()) return;
    selected_ = position;
    XmTabStackSelectTab(tabs_[asIndex(position)], True);
}

void zTabStrip::place(const zRect& place) {
    place_ = place;
    zControl::place(place);
}

void zTabStrip::realized() {
    // The tab stack computed a size of its own when the tabs were added.
    zControl::place(place_);
}
