#include "toolkit/controls/notebook.h"

#include "platform/index.h"
#include "toolkit/controls/tabs.h"

#include <Xm/DrawingA.h>
#include <Xm/TabStack.h>
#include <algorithm>

zNotebook::zNotebook(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), layoutPlace_(place), place_(place) {
    zResources resources(place);
    attach(zMakeTabs(board, row, resources));
    listen(XmNtabSelectedCallback, [](zControl& self, void* data) {
        auto& notebook = static_cast<zNotebook&>(self);
        // Realizing calls this, too, with a null event.
        const auto* call = static_cast<XmTabStackCallbackStruct*>(data);
        if (XtIsRealized(notebook.widget())) notebook.raise();
        if (const auto handler = notebook.onSelect; handler && call->event) handler(notebook.selected());
    });
}

zBoard& zNotebook::addPage(const zLayout& layout) {
    addPage(layout, {});
    make(pages_.back());
    return *pages_.back().board;
}

void zNotebook::addPage(const zLayout& layout, std::function<void(zBoard&)> made) {
    const zXmText caption(layout.caption);
    const Widget sheet = XtVaCreateManagedWidget(layout.name, xmDrawingAreaWidgetClass, widget(),
                                                 XmNtabLabelString, caption.get(), XmNmarginWidth, 0,
                                                 XmNmarginHeight, 0, XmNresizePolicy, XmRESIZE_NONE, nullptr);
    pages_.push_back({sheet, layout, nullptr, std::move(made)});
}

void zNotebook::make(Page& page) {
    page.board = std::make_unique<zBoard>(page.sheet, "board", page.layout);
    if (page.made) page.made(*page.board);
}

int zNotebook::selected() const {
    const Widget top = XmTabStackGetSelectedTab(widget());
    const auto found =
        std::find_if(pages_.begin(), pages_.end(), [top](const Page& page) { return page.sheet == top; });
    return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

void zNotebook::select(int position) {
    if (position >= 0 && position < count()) XmTabStackSelectTab(pages_[asIndex(position)].sheet, False);
    if (XtIsRealized(widget())) raise();
}

void zNotebook::raise() {
    const int position = selected();
    if (position < 0) return;
    Page& page = pages_[asIndex(position)];
    if (!page.board) make(page);
    if (XtIsManaged(page.board->widget())) return;
    XtManageChild(page.board->widget());
    page.board->realized();
    if (place_.width != layoutPlace_.width || place_.height != layoutPlace_.height) fill(*page.board);
}

void zNotebook::fill(zBoard& board) const {
    board.stretch(place_.width - layoutPlace_.width, place_.height - layoutPlace_.height);
}

void zNotebook::place(const zRect& place) {
    place_ = place;
    zControl::place(place);
    for (const Page& page : pages_)
        if (page.board && XtIsManaged(page.board->widget())) fill(*page.board);
}

void zNotebook::realized() {
    zSetGeometry(widget(), place_);
    raise();
}
