#include "toolkit/notebook.h"

#include "toolkit/tabs.h"

#include <Xm/TabStack.h>
#include <algorithm>

zNotebook::zNotebook(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), place_(place) {
    zPlaced resources(place);
    attach(zMakeTabs(board, row, resources));
    listen(XmNtabSelectedCallback, [](zControl& self, void* data) {
        auto& notebook = static_cast<zNotebook&>(self);
        // The first callback comes when the window is made, and nobody has chosen anything.
        const auto* call = static_cast<XmTabStackCallbackStruct*>(data);
        if (const auto handler = notebook.onSelect; handler && call->event) handler(notebook.selected());
    });
}

zBoard& zNotebook::addPage(const zLayout& layout) {
    pages_.push_back(std::make_unique<zBoard>(widget(), layout.name, layout));
    zBoard& page = *pages_.back();
    const zXmText caption(layout.caption);
    XtVaSetValues(page.widget(), XmNtabLabelString, caption.get(), nullptr);
    XtManageChild(page.widget());
    return page;
}

int zNotebook::selected() const {
    const Widget top = XmTabStackGetSelectedTab(widget());
    const auto found =
        std::find_if(pages_.begin(), pages_.end(), [top](const auto& page) { return page->widget() == top; });
    return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

void zNotebook::select(int position) {
    if (position >= 0 && position < count())
        XmTabStackSelectTab(pages_[static_cast<std::size_t>(position)]->widget(), False);
}

void zNotebook::realized() {
    zKeepPlace(widget(), place_);
    for (const auto& page : pages_) page->realized();
}
