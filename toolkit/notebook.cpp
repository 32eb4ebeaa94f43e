#include "toolkit/notebook.h"

#include "toolkit/tabs.h"

#include <Xm/DrawingA.h>
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
        if (XtIsRealized(notebook.widget())) notebook.raise();
        if (const auto handler = notebook.onSelect; handler && call->event) handler(notebook.selected());
    });
}

zBoard& zNotebook::addPage(const zLayout& layout) {
    const zXmText caption(layout.caption);
    const Widget sheet =
        XtVaCreateWidget("sheet", xmDrawingAreaWidgetClass, widget(), XmNtabLabelString, caption.get(),
                         XmNmarginWidth, 0, XmNmarginHeight, 0, XmNresizePolicy, XmRESIZE_NONE, nullptr);
    pages_.push_back(std::make_unique<zBoard>(sheet, layout.name, layout));
    zBoard& page = *pages_.back();
    XtVaSetValues(sheet, XmNwidth, page.size().width, XmNheight, page.size().height, nullptr);
    XtManageChild(sheet);
    return page;
}

int zNotebook::selected() const {
    const Widget top = XmTabStackGetSelectedTab(widget());
    const auto found = std::find_if(pages_.begin(), pages_.end(),
                                    [top](const auto& page) { return XtParent(page->widget()) == top; });
    return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

void zNotebook::select(int position) {
    if (position >= 0 && position < count())
        XmTabStackSelectTab(XtParent(pages_[static_cast<std::size_t>(position)]->widget()), False);
    if (XtIsRealized(widget())) raise();
}

void zNotebook::raise() {
    const int position = selected();
    if (position < 0) return;
    const zBoard& page = *pages_[static_cast<std::size_t>(position)];
    if (XtIsManaged(page.widget())) return;
    XtManageChild(page.widget());
    page.realized();
}

void zNotebook::realized() {
    zKeepPlace(widget(), place_);
    raise();
}
