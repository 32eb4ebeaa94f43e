#include "toolkit/table/table.h"

#include "platform/index.h"
#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/rowwidget.h"

#include <X11/keysym.h>
#include <Xm/DrawingA.h>
#include <Xm/Frame.h>
#include <Xm/ScrollBar.h>
#include <algorithm>
#include <utility>

namespace {

constexpr int barGap = 2;
constexpr int shadow = 2;
constexpr int ring = 1;         // around the table: shows the keyboard focus, as other controls show it
constexpr int rowMargin = 4;    // above and below a text, in total
constexpr int labelMargin = 6;  // the same for a label, including its edges
constexpr int wheelRows = 3, wheelPixels = 40;
constexpr int widthMargin = 8;              // left and right of a text, in total
constexpr char usualText[] = "0000000000";  // determines the default column width

constexpr EventMask handledEvents =
    KeyPressMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask | FocusChangeMask;

Widget makeBar(Widget parent, const char* name, unsigned char orientation) {
    return XtVaCreateWidget(name, xmScrollBarWidgetClass, parent, XmNorientation, orientation, XmNtraversalOn,
                            False, XmNhighlightThickness, 0, nullptr);
}

// Where a key takes the active cell.
struct Move {
    KeySym key;
    bool control;
    int rows, columns;  // steps; `far`: to the end, `page`: as many rows as are visible
};
constexpr int far = 1 << 20, page = 1 << 19;
constexpr Move moves[] = {
    {XK_Up, false, -1, 0},          {XK_Down, false, 1, 0},       {XK_Left, false, 0, -1},
    {XK_Right, false, 0, 1},        {XK_Prior, false, -page, 0},  {XK_Next, false, page, 0},
    {XK_Home, false, 0, -far},      {XK_End, false, 0, far},      {XK_Home, true, -far, -far},
    {XK_End, true, far, far},       {XK_KP_Up, false, -1, 0},     {XK_KP_Down, false, 1, 0},
    {XK_KP_Prior, false, -page, 0}, {XK_KP_Next, false, page, 0}, {XK_KP_Home, false, 0, -far},
    {XK_KP_End, false, 0, far},
};

}  // namespace

// Event handlers and callbacks. The user data of the canvas is the table.
struct zTable::Handlers {
    static void event(Widget, XtPointer self, XEvent* event, Boolean*) {
        auto& table = *static_cast<zTable*>(self);
        const bool pointer =
            event->type == ButtonPress || event->type == ButtonRelease || event->type == MotionNotify;
        if (pointer && table.drag_.event(table.widget(), *event)) return;
        if (event->type == MotionNotify) passOn(table, *event);
        switch (event->type) {
        case KeyPress:
            key(table, event->xkey);
            break;
        case ButtonPress:
            button(table, event->xbutton);
            break;
        case ButtonRelease:
            if (event->xbutton.button == Button1) release(table, event->xbutton);
            break;
        case FocusIn:
        case FocusOut:
            if (isOwn(event->xfocus)) table.showFocus(event->type == FocusIn);
            break;
        }
    }

    // Those about the pointer come while another control has the focus.
    static bool isOwn(const XFocusChangeEvent& event) {
        return event.detail != NotifyPointer && event.detail != NotifyPointerRoot &&
               event.detail != NotifyInferior;
    }

    // To the board, whose tooltips wait for it: it got the motions that the canvas does not ask for.
    static void passOn(const zTable& table, XEvent event) {
        const Widget board = XtParent(table.container_);
        for (Widget inside = table.widget(); inside != board; inside = XtParent(inside)) {
            Position x = 0, y = 0;
            XtVaGetValues(inside, XmNx, &x, XmNy, &y, nullptr);
            event.xmotion.x += x;
            event.xmotion.y += y;
        }
        event.xmotion.window = XtWindow(board);
        XtDispatchEventToWidget(board, &event);
    }

    static void key(zTable& table, XKeyEvent& event) {
        const KeySym symbol = XLookupKeysym(&event, 0);
        const bool control = event.state & ControlMask;
        table.meant_ = 0;
        if (control) command(table, symbol);
        for (const Move& move : moves) {
            if (move.key != symbol || move.control != control) continue;
            const int step =
                std::abs(move.rows) == page ? table.grid_.wholeRows() * (move.rows > 0 ? 1 : -1) : move.rows;
            table.moveBy(move.columns, step);
        }
    }

    // With Control.
    static void command(zTable& table, KeySym symbol) {
        switch (symbol) {
        case XK_c:
        case XK_Insert:
            table.toClipboard(table.tabSeparated());
            break;
        case XK_o:
            table.sortFurther(table.active_.column);
            break;
        case XK_f:
        case XK_g:
            if (const auto handler = symbol == XK_f ? table.onFind : table.onFindNext) handler();
            break;
        }
    }

    static void press(zTable& table, const XButtonEvent& event) {
        XmProcessTraversal(table.widget(), XmTRAVERSE_CURRENT);
        const zTableLoc at = table.grid_.at(event.x, event.y);
        table.pressed_ = at.row == 0 ? at.column : 0;
        table.point(event.x, event.y);
    }

    static void release(zTable& table, const XButtonEvent& event) {
        const int column = std::exchange(table.pressed_, 0);
        if (column > 0 && table.grid_.at(event.x, event.y) == zTableLoc{column, 0}) table.sortFurther(column);
    }

    static void button(zTable& table, const XButtonEvent& event) {
        const zTableGrid& grid = table.grid_;
        const bool sideways = event.state & ShiftMask;
        switch (event.button) {
        case Button1:
            press(table, event);
            break;
        case Button4:
        case Button5: {
            const int direction = event.button == Button4 ? -1 : 1;
            if (sideways)
                table.scrollTo(grid.firstRow(), grid.left() + direction * wheelPixels);
            else
                table.scrollTo(grid.firstRow() + direction * wheelRows, grid.left());
            break;
        }
        case 6:
        case 7:
            table.scrollTo(grid.firstRow(), grid.left() + (event.button == 6 ? -wheelPixels : wheelPixels));
            break;
        }
    }

    static void bar(zControl& self, void*) {
        auto& table = static_cast<zTable&>(self);
        int row = 0, left = 0;
        XtVaGetValues(table.vertical_, XmNvalue, &row, nullptr);
        XtVaGetValues(table.horizontal_, XmNvalue, &left, nullptr);
        table.scrollTo(row, left);
    }
};

zTable::zTable(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), place_(place), drag_(
                                        row, grid_, [this](int column) { return fittedWidth(column); },
                                        [this](int column, int width) { widen(column, width); }),
      barThickness_(zDialogUnits::ofBoard(board).grown(zBarThickness)),
      painting_(XtDisplay(board), [this] { flush(); }) {
    zResources resources(place);
    resources.set(XmNmarginWidth, 0).set(XmNmarginHeight, 0).set(XmNresizePolicy, XmRESIZE_NONE);
    container_ = zMakeWidget(xmDrawingAreaWidgetClass, board, row, resources);
    frame_ = XtVaCreateManagedWidget("frame", xmFrameWidgetClass, container_, XmNshadowType, XmSHADOW_IN,
                                     XmNshadowThickness, shadow, XmNmarginWidth, 0, XmNmarginHeight, 0, XmNx,
                                     ring, XmNy, ring, XmNwidth, place.width - 2 * ring, XmNheight,
                                     place.height - 2 * ring, nullptr);
    vertical_ = makeBar(container_, "vertical", XmVERTICAL);
    horizontal_ = makeBar(container_, "horizontal", XmHORIZONTAL);
    attach(XtVaCreateManagedWidget("cells", xmDrawingAreaWidgetClass, frame_, XmNmarginWidth, 0,
                                   XmNmarginHeight, 0, XmNresizePolicy, XmRESIZE_NONE, XmNtraversalOn, True,
                                   XmNnavigationType, XmEXCLUSIVE_TAB_GROUP, XmNuserData, this, nullptr));
    paint_ = std::make_unique<zTablePaint>(widget());
    setFont({});

    XtAddEventHandler(widget(), handledEvents, False, Handlers::event, this);
    listen(XmNexposeCallback, [](zControl& self, void* data) {
        auto& table = static_cast<zTable&>(self);
        const XEvent* event = static_cast<XmDrawingAreaCallbackStruct*>(data)->event;
        if (!table.realized_ || !event) return;
        const XExposeEvent& e = event->xexpose;
        table.paint_->show({e.x, e.y, e.width, e.height});
    });
    listen(container_, XmNexposeCallback, [](zControl& self, void*) {
        const auto& table = static_cast<zTable&>(self);
        if (table.focused_) table.drawRing();
    });
    for (const Widget bar : {vertical_, horizontal_})
        for (const char* callback : {XmNvalueChangedCallback, XmNdragCallback})
            listen(bar, callback, Handlers::bar);
}

zTable::~zTable() {
    XtRemoveEventHandler(widget(), handledEvents, False, Handlers::event, this);
}

void zTable::showFocus(bool on) {
    if (on == focused_) return;
    focused_ = on;
    changed(active_);
    if (!realized_) return;
    if (on)
        drawRing();
    else
        for (const zRect& side : ringSides())
            XClearArea(XtDisplay(container_), XtWindow(container_), side.x, side.y,
                       static_cast<unsigned>(side.width), static_cast<unsigned>(side.height), False);
}

std::array<zRect, 4> zTable::ringSides() const {
    const int width = place_.width, height = place_.height;
    return {{{0, 0, width, ring},
             {0, height - ring, width, ring},
             {0, 0, ring, height},
             {width - ring, 0, ring, height}}};
}

void zTable::drawRing() const {
    XGCValues values{};
    XtVaGetValues(container_, XmNhighlightColor, &values.foreground, nullptr);
    const GC gc = XtGetGC(container_, GCForeground, &values);
    for (const zRect& side : ringSides())
        XFillRectangle(XtDisplay(container_), XtWindow(container_), gc, side.x, side.y,
                       static_cast<unsigned>(side.width), static_cast<unsigned>(side.height));
    XtReleaseGC(container_, gc);
}

void zTable::enable(bool on) {
    zControl::enable(on);
    changedAll();
}

void zTable::grey(bool on) {
    if (on == greyed_) return;
    greyed_ = on;
    changedAll();
}

void zTable::place(const zRect& place) {
    place_ = place;
    zControl::place(place);
    arrange();
}

void zTable::realized() {
    realized_ = true;
    arrange();
}

void zTable::resize(int columns, int rows) {
    if (columns == model_.columns() && rows == model_.rows()) return;
    model_.resize(columns, rows);
    grid_.rows = model_.rows();
    order_.setRows(grid_.rows);
    const auto before = widths_.size();
    widths_.resize(asIndex(model_.columns()) + 1);
    for (auto i = before; i < widths_.size(); ++i) widths_[i] = textWidth(usualText) + widthMargin;
    setWidths();
    if (sorting_.column > grid_.columns()) {
        sorting_ = {};
        order_.byNumber();
    }
    const bool gone = active_.row > grid_.rows;
    if (gone && (nameOf_ || grid_.rows == 0)) awaited_ = active_;
    if (grid_.rows > 0 && awaited_.row > 0 && !nameOf_) active_ = std::exchange(awaited_, {});
    if (active_.row > grid_.rows || active_.column > grid_.columns()) active_ = {};
    // With names it is not known yet where the active row is.
    if (nameOf_)
        layOut();
    else
        arrange();
}

bool zTable::setText(zTableLoc location, std::string_view text) {
    if (!model_.set(location, text)) return false;
    changed(location);
    return true;
}

bool zTable::unwritten(int row) const {
    return write_ && row > 0 && asIndex(row) < stale_.size() && stale_[asIndex(row)];
}

void zTable::writeRow(int row) {
    if (!unwritten(row)) return;
    stale_[asIndex(row)] = false;
    write_(row);
}

void zTable::writePlaces(int first, int last) {
    for (int place = first; place <= last; ++place) writeRow(order_.rowAt(place));
}

void zTable::setColumnWidth(int column, int width) {
    widen(column, drag_.chosen(column).value_or(width));
}

void zTable::widen(int column, int width) {
    if (column < 0 || column > grid_.columns() || widths_[asIndex(column)] == width) return;
    widths_[asIndex(column)] = width;
    setWidths();
    arrange();
}

void zTable::setWidths() {
    const int columns = model_.columns();
    if (columns > 0 && hiddenAmong(columns) == columns) hidden_.clear();
    grid_.widths = widths_;
    for (int column = 1; column <= columns; ++column)
        if (isHidden(column)) grid_.widths[asIndex(column)] = 0;
}

// With the mark of a column by which rows are sorted.
int zTable::labelWidth(int column) const {
    return textWidth(textOf({column, 0})) + widthMargin + (canSort(column) ? paint_->markWidth() : 0);
}

// So that every text of the column is whole, also of rows that nobody has seen.
int zTable::fittedWidth(int column) {
    int widest = 0;
    for (int row = 1; row <= grid_.rows; ++row) widest = std::max(widest, textWidth(text({column, row})));
    return std::max(widest + widthMargin, labelWidth(column));
}

void zTable::fitColumn(int column, std::initializer_list<std::string_view> texts) {
    int widest = 0;
    for (const std::string_view text : texts) widest = std::max(widest, textWidth(text));
    setColumnWidth(column, std::max(widest + widthMargin, canSort(column) ? labelWidth(column) : 0));
}

void zTable::numberRows(bool on) {
    numbered_ = on;
    changedAll();
}

void zTable::setFont(const std::string& pattern) {
    paint_->setFont(pattern);
    grid_.rowHeight = textHeight() + rowMargin;
    grid_.labelHeight = textHeight() + labelMargin;
    arrange();
}

void zTable::setActiveCell(zTableLoc location) {
    if (location.row < 0 || location.row > grid_.rows || location.column < 0 ||
        location.column > grid_.columns())
        location = {};
    awaited_ = {};
    if (nameOf_ && location.row > 0) name_ = nameOf_(location.row);
    if (location == active_) return;
    changedRow(active_.row);
    active_ = location;
    changedRow(active_.row);
    reveal();
}

// The active cell.
void zTable::reveal() {
    if (realized_ && grid_.reveal(placeOf(active_))) {
        updateScrollBars();
        changedAll();
    }
    noteActive();
}

void zTable::point(int x, int y) {
    const zTableLoc at = grid_.at(x, y);
    meant_ = at.row == 0 ? at.column : 0;
    const std::vector<int> shown = shownColumns();
    if (at.row > 0 && !shown.empty()) moveTo(locationAt({at.column > 0 ? at.column : shown.front(), at.row}));
}

// Moves the active cell for the user.
void zTable::moveTo(zTableLoc location) {
    const bool other = location != active_;
    setActiveCell(location);
    reveal();
    const auto handler = onActiveChange;
    if (other && handler) handler();
}

void zTable::scrollTo(int firstRow, int left) {
    const int row = grid_.firstRow(), pixels = grid_.left();
    grid_.scrollTo(firstRow, left);
    if (grid_.firstRow() == row && grid_.left() == pixels) return;
    noteActive();
    updateScrollBars();
    changedAll();
}

// If the user has scrolled the active cell out of sight, it stays so when rows come and go.
void zTable::arrange() {
    layOut();
    if (!realized_) return;
    if (inSight_ && active_.row > 0 && grid_.reveal(placeOf(active_))) updateScrollBars();
    noteActive();
}

// Shows the scroll bars that are needed; they take space themselves.
void zTable::layOut() {
    if (!realized_) return;
    const int contentWidth = grid_.widths[0] + grid_.columnsWidth() + 2 * shadow;
    const int contentHeight = grid_.labelHeight + grid_.rows * grid_.rowHeight + 2 * shadow;
    const int room = barThickness_ + barGap;
    const int inWidth = place_.width - 2 * ring, inHeight = place_.height - 2 * ring;
    bool across = contentWidth > inWidth;
    const bool down = contentHeight > inHeight - (across ? room : 0);
    across = contentWidth > inWidth - (down ? room : 0);
    const int width = inWidth - (down ? room : 0), height = inHeight - (across ? room : 0);

    if (grid_.width() != width - 2 * shadow || grid_.height() != height - 2 * shadow) {
        zSetGeometry(frame_, {ring, ring, width, height});  // resizes the canvas, too
        paint_->resize(width - 2 * shadow, height - 2 * shadow);
    }
    grid_.setView(width - 2 * shadow, height - 2 * shadow);
    const auto put = [](Widget bar, bool needed, const zRect& r) {
        if (!needed) {
            XtUnmanageChild(bar);
            return;
        }
        XtManageChild(bar);
        zSetGeometry(bar, r);
    };
    put(vertical_, down, {ring + inWidth - barThickness_, ring, barThickness_, height});
    put(horizontal_, across, {ring, ring + inHeight - barThickness_, width, barThickness_});
    updateScrollBars();
    changedAll();
}

void zTable::updateScrollBars() {
    const auto set = [](Widget bar, int least, int value, int shown, int all, int step) {
        all = std::max(all, 1);
        shown = std::clamp(shown, 1, all);
        XtVaSetValues(bar, XmNminimum, least, XmNmaximum, least + all, XmNsliderSize, shown, XmNvalue,
                      std::min(value, least + all - shown), XmNincrement, step, XmNpageIncrement,
                      std::max(1, shown - step), nullptr);
    };
    set(vertical_, 1, grid_.firstRow(), grid_.wholeRows(), grid_.rows, 1);
    set(horizontal_, 0, grid_.left(), grid_.columnsView(), grid_.columnsWidth(), wheelPixels);
}

void zTable::changed(zTableLoc location) {
    if (realized_ && !allDirty_) changedPlace(placeOf(location));
}

void zTable::changedPlace(zTableLoc place) {
    if (!realized_ || allDirty_) return;
    const zRect seen = grid_.visible(place);
    if (seen.width <= 0 || seen.height <= 0) return;
    dirty_.push_back(place);
    if (!painting_.isSet()) painting_.set({});
}

void zTable::changedRow(int row) {
    if (row > 0) changedPlaces(order_.placeOf(row));
}

void zTable::changedPlaces(int row) {
    if (row < 1) return;
    for (int column = 0; column <= grid_.columns(); ++column) changedPlace({column, row});
}

void zTable::changedAll() {
    if (!realized_) return;
    allDirty_ = true;
    if (!painting_.isSet()) painting_.set({});
}

void zTable::flush() {
    if (allDirty_) {
        writePlaces(grid_.firstRow(), grid_.lastRow());
        paint_->clear({0, 0, grid_.width(), grid_.height()});
        for (int column = 0; column <= grid_.columns(); ++column) {
            paintCell({column, 0});
            for (int row = grid_.firstRow(); row <= grid_.lastRow(); ++row) paintCell({column, row});
        }
        paint_->show({0, 0, grid_.width(), grid_.height()});
    } else {
        const auto before = [](zTableLoc a, zTableLoc b) {
            return a.row != b.row ? a.row < b.row : a.column < b.column;
        };
        std::sort(dirty_.begin(), dirty_.end(), before);
        dirty_.erase(std::unique(dirty_.begin(), dirty_.end()), dirty_.end());
        for (const zTableLoc place : dirty_) {
            const zRect seen = grid_.visible(place);
            if (seen.width <= 0 || seen.height <= 0) continue;
            paintCell(place);
            paint_->show(seen);
        }
    }
    allDirty_ = false;
    dirty_.clear();
}

void zTable::paintCell(zTableLoc place) {
    const zTableLoc l = locationAt(place);
    const bool label = l.row == 0 || l.column == 0;
    const bool marked = !label && l.row == active_.row;
    zTablePaint::Look look{label, marked, marked && focused_ && l.column == active_.column,
                           (greyed_ && !label) || !XtIsSensitive(widget())};
    if (l.row == 0 && l.column > 0 && l.column == sorting_.column)
        look.mark = sorting_.descending ? zTablePaint::Mark::down : zTablePaint::Mark::up;
    paint_->cell(grid_.cell(place), grid_.visible(place), textOf(l), look);
}

std::string zTable::textOf(zTableLoc l) const {
    if (numbered_ && l.column == 0) return l.row > 0 ? std::to_string(l.row) : std::string();
    return std::string(model_.text(l));
}

std::string zTable::text(zTableLoc location) {
    writeRow(location.row);
    return textOf(location);
}

std::vector<std::string> zTable::line(int row) {
    writeRow(row);
    std::vector<std::string> texts;
    for (int column = grid_.widths[0] > 0 ? 0 : 1; column <= grid_.columns(); ++column)
        if (column == 0 || !isHidden(column)) texts.push_back(textOf({column, row}));
    return texts;
}

std::string zTable::tabSeparated() {
    std::string text;
    bool labelled = false;
    for (const int column : shownColumns()) labelled |= !model_.text({column, 0}).empty();
    for (int place = labelled ? 0 : 1; place <= grid_.rows; ++place)
        text += tabSeparated(order_.rowAt(place)) + '\n';
    return text;
}

std::string zTable::tabSeparated(int row) {
    const std::vector<std::string> cells = line(row);
    std::string text = cells.empty() ? std::string() : cells.front();
    for (std::size_t i = 1; i < cells.size(); ++i) text += '\t' + cells[i];
    return text;
}
