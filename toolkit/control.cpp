#include "toolkit/control.h"

#include "toolkit/xmtext.h"

#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/Separator.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <fmt/core.h>

namespace {

std::string widgetName(const zControlRow& row) {
    return row.id >= 0 ? fmt::format("id{}", row.id) : row.name ? row.name : "unnamed";
}

// Resources that every control shares.
struct Place {
    std::vector<Arg> args;

    explicit Place(const zRect& place) {
        set(XmNx, place.x);
        set(XmNy, place.y);
        set(XmNwidth, place.width);
        set(XmNheight, place.height);
    }
    Place& set(const char* resource, XtArgVal value) {
        args.push_back({const_cast<char*>(resource), value});
        return *this;
    }
    Place& set(const char* resource, const zXmText& text) {
        return set(resource, reinterpret_cast<XtArgVal>(text.get()));
    }
    Cardinal count() const { return static_cast<Cardinal>(args.size()); }
};

Widget make(WidgetClass widgetClass, Widget board, const zControlRow& row, Place& place) {
    const Widget widget =
        XtCreateManagedWidget(widgetName(row).c_str(), widgetClass, board, place.args.data(), place.count());
    return widget;
}

}  // namespace

// Joins one callback list of a widget to a control; leaves the list with the control.
struct zControl::Listener {
    zControl& control;
    Widget widget;
    const char* callback;
    Handler handler;

    Listener(zControl& c, Widget w, const char* list, Handler h)
        : control(c), widget(w), callback(list), handler(h) {
        XtAddCallback(widget, callback, call, this);
    }
    ~Listener() { XtRemoveCallback(widget, callback, call, this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    static void call(Widget, XtPointer self, XtPointer data) {
        const auto* listener = static_cast<Listener*>(self);
        listener->handler(listener->control, data);
    }
};

zControl::zControl(const zControlRow& row) : id_(row.id) {}

zControl::~zControl() = default;

std::unique_ptr<zControl> zControl::create(Widget board, const zDialogUnits& units, const zControlRow& row) {
    const zRect place = units.pixels(row.place);
    switch (row.kind) {
    case zKind::staticText:
        return std::make_unique<zStatic>(board, place, row);
    case zKind::edit:
        return std::make_unique<zEdit>(board, place, row);
    case zKind::listBox:
        return std::make_unique<zListBox>(board, place, row);
    case zKind::bitmapButton:
        return std::make_unique<zBitmapButton>(board, place, row);
    case zKind::frame:
        return std::make_unique<zFrame>(board, place, row);
    }
    return nullptr;
}

void zControl::enable(bool on) {
    XtSetSensitive(widget_, on);
}

bool zControl::enabled() const {
    return XtIsSensitive(widget_);
}

void zControl::listen(const char* callback, Handler handler) {
    listeners_.push_back(std::make_unique<Listener>(*this, widget_, callback, handler));
}

zStatic::zStatic(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    Place resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False).set(XmNtraversalOn, False);
    resources.set(XmNalignment, XmALIGNMENT_BEGINNING).set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    attach(make(xmLabelWidgetClass, board, row, resources));
}

zFrame::zFrame(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    Place resources(place);
    const bool vertical = row.place.width <= 1;
    // The line is two pixels of shadow; one unit may be one more.
    resources.set(XmNorientation, vertical ? XmVERTICAL : XmHORIZONTAL).set(XmNmargin, 0);
    attach(make(xmSeparatorWidgetClass, board, row, resources));
}

zEdit::zEdit(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    Place resources(place);
    if (row.style & zReadOnly) resources.set(XmNeditable, False).set(XmNcursorPositionVisible, False);
    resources.set(XmNvalue, reinterpret_cast<XtArgVal>(row.text)).set(XmNmarginHeight, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    const Widget field = make(xmTextFieldWidgetClass, board, row, resources);
    attach(field);

    // The text field puts its line at the top margin; centre it in the height that the layout gives.
    XmRenderTable table = nullptr;
    Dimension highlight = 0, shadow = 0;
    XtVaGetValues(field, XmNrenderTable, &table, XmNhighlightThickness, &highlight, XmNshadowThickness,
                  &shadow, nullptr);
    const zXmText sample("Ag");
    const int spare = place.height - 2 * (highlight + shadow) - XmStringHeight(table, sample.get());
    XtVaSetValues(field, XmNmarginHeight, static_cast<Dimension>(std::max(0, spare / 2)), nullptr);
    // A change of margin makes the field compute its own size; the layout's comes back after it.
    XtVaSetValues(field, XmNwidth, place.width, XmNheight, place.height, nullptr);
}

void zEdit::setText(const std::string& value) {
    std::string shown = value;
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    if (shown != text()) XmTextFieldSetString(widget(), shown.data());
}

std::string zEdit::text() const {
    const std::unique_ptr<char, void (*)(char*)> held(XmTextFieldGetString(widget()), XtFree);
    return held.get();
}

zListBox::zListBox(Widget board, const zRect& place, const zControlRow& row) : zControl(row), place_(place) {
    Place resources(place);
    resources.set(XmNselectionPolicy, XmBROWSE_SELECT).set(XmNlistSizePolicy, XmCONSTANT);
    resources.set(XmNscrollBarDisplayPolicy, XmAS_NEEDED).set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    const std::string name = widgetName(row);
    const Widget list = XmCreateScrolledList(board, const_cast<char*>(name.c_str()), resources.args.data(),
                                             resources.count());
    XtManageChild(list);
    attach(list);
    keepPlace();
    listen(XmNbrowseSelectionCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zListBox&>(self).onSelect) handler();
    });
    listen(XmNdefaultActionCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zListBox&>(self).onActivate) handler();
    });
}

void zListBox::append(const std::string& line) {
    const zXmText text(line);
    XmListAddItemUnselected(widget(), text.get(), 0);
    lines_.push_back(line);
    keepPlace();
}

// The list asks for the height of whole lines, anew with each change; the window around it keeps the
// layout's.
void zListBox::keepPlace() {
    XtVaSetValues(outermost(), XmNx, place_.x, XmNy, place_.y, XmNwidth, place_.width, XmNheight,
                  place_.height, nullptr);
}

std::string zListBox::line(int position) const {
    return position >= 0 && position < count() ? lines_[static_cast<std::size_t>(position)] : std::string();
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
    int* positions = nullptr;
    int found = 0;
    if (!XmListGetSelectedPos(widget(), &positions, &found)) return -1;
    const int first = positions[0] - 1;
    XtFree(reinterpret_cast<char*>(positions));
    return first;
}

Widget zListBox::outermost() const {
    return XtParent(widget());
}

zBitmapButton::zBitmapButton(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    const zXmText text(row.text);
    Place resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    const Widget button = make(xmPushButtonWidgetClass, board, row, resources);
    attach(button);

    Pixel background = 0;
    XtVaGetValues(button, XmNbackground, &background, nullptr);
    picture_ = zPixmap(button, row.picture, background);
    if (picture_)
        XtVaSetValues(button, XmNlabelType, XmPIXMAP_AND_STRING, XmNlabelPixmap, picture_.handle(), nullptr);
    listen(XmNactivateCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zBitmapButton&>(self).onClick) handler();
    });
}
