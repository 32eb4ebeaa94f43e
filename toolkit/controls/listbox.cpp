#include "toolkit/controls/listbox.h"

#include "platform/index.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"

#include <Xm/List.h>

zListBox::zListBox(Widget board, const zRect& place, const zControlRow& row) : zControl(row), place_(place) {
    zResources resources(place);
    resources.set(XmNselectionPolicy, row.style & zSeveral ? XmMULTIPLE_SELECT : XmBROWSE_SELECT);
    resources.set(XmNlistSizePolicy, XmCONSTANT);
    resources.set(XmNscrollBarDisplayPolicy, XmAS_NEEDED).set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    if (row.style & zSmallFont)
        resources.set(XmNrenderTable, reinterpret_cast<XtArgVal>(
                                          zDisplayCache::of(XtDisplay(board)).renderTable(board, "small")));
    std::string name = zWidgetName(row);
    const Widget list = XmCreateScrolledList(board, name.data(), resources.args.data(), resources.count());
    XtManageChild(list);
    attach(list);
    zGrowScrollBars(XtParent(list), board);
    zSetGeometry(XtParent(list), place_);
    listen(XmNbrowseSelectionCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zListBox&>(self).onSelect) handler();
    });
    listen(XmNdefaultActionCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zListBox&>(self).onActivate) handler();
    });
}

void zListBox::place(const zRect& place) {
    place_ = place;
    zControl::place(place);
}

void zListBox::setLines(std::vector<std::string> lines) {
    lines_ = std::move(lines);
    XmListDeleteAllItems(widget());
    // Added all at once: the list computes its size after each call.
    std::vector<zXmText> texts(lines_.begin(), lines_.end());
    std::vector<XmString> items;
    items.reserve(texts.size());
    for (const zXmText& text : texts) items.push_back(text.get());
    if (!items.empty()) XmListAddItemsUnselected(widget(), items.data(), count(), 0);
    // After each change the list requests a height of whole lines.
    zSetGeometry(outermost(), place_);
}

std::string zListBox::line(int position) const {
    return position >= 0 && position < count() ? lines_[asIndex(position)] : std::string();
}

void zListBox::select(int position) {
    if (position < 0 || position >= count()) {
        XmListDeselectAllItems(widget());
        return;
    }
    XmListSelectPos(widget(), position + 1, False);
    XmListSetKbdItemPos(widget(), position + 1);
}

int zListBox::selected() const {
    const std::vector<int> all = allSelected();
    return all.empty() ? -1 : all.front();
}

std::vector<int> zListBox::allSelected() const {
    int* positions = nullptr;
    int found = 0;
    if (!XmListGetSelectedPos(widget(), &positions, &found)) return {};
    std::vector<int> all(positions, positions + found);
    XtFree(reinterpret_cast<char*>(positions));
    for (int& position : all) --position;
    return all;
}

void zListBox::point(int, int y) {
    const int position = XmListYToPos(widget(), static_cast<Position>(y)) - 1;
    if (position < 0 || position >= count() || position == selected()) return;
    select(position);
    if (const auto handler = onSelect) handler();
}

zRect zListBox::selectedPlace() const {
    Position x = 0, y = 0;
    Dimension width = 0, height = 0;
    if (!XmListPosToBounds(widget(), selected() + 1, &x, &y, &width, &height))
        return zControl::selectedPlace();
    return {x, y, width, height};
}

Widget zListBox::outermost() const {
    return XtParent(widget());
}
