#include "toolkit/controls/messageline.h"

#include "toolkit/controls/choice.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/statics.h"
#include "toolkit/display/xmtext.h"

#include <Xm/Xm.h>
#include <fmt/format.h>
#include <sstream>

namespace {

constexpr EventMask pointerEvents = PointerMotionMask | LeaveWindowMask;
constexpr EventMask fieldEvents = KeyPressMask | FocusChangeMask;

// Calls `visit(widget, callback list)` for each control that the user chooses with.
template <class Visit> void forEachChoice(const zBoard& board, const Visit& visit) {
    board.forEach<zCheckBox>([&](zCheckBox& box) { visit(box.widget(), XmNvalueChangedCallback); });
    board.forEach<zRadioButton>(
        [&](zRadioButton& button) { visit(button.widget(), XmNvalueChangedCallback); });
    board.forEach<zDropDown>([&](zDropDown& list) { visit(list.widget(), XmNselectionCallback); });
}

}  // namespace

struct zMessageLine::Handlers {
    static void pointer(Widget, XtPointer watch, XEvent* event, Boolean*) {
        const auto& [line, board] = *static_cast<Board*>(watch);
        if (event->type == MotionNotify)
            line.pointerAt(board, event->xmotion.x, event->xmotion.y);
        else if (event->xcrossing.detail != NotifyInferior)
            line.pointerAt(board, -1, -1);
    }
    static void field(Widget, XtPointer watch, XEvent* event, Boolean*) {
        const auto& [line, field] = *static_cast<Field*>(watch);
        line.fieldEvent(field, event->type);
    }
    static void chosen(Widget, XtPointer self, XtPointer) { static_cast<zMessageLine*>(self)->refresh(); }
};

zMessageLine::zMessageLine(zBoard& window) : line_(window.control<zStatic>("message").widget()) {
    watch(window);
}

zMessageLine::~zMessageLine() {
    for (Board& watched : boards_) {
        XtRemoveEventHandler(watched.board.widget(), pointerEvents, False, Handlers::pointer, &watched);
        forEachChoice(watched.board, [this](Widget control, const char* list) {
            XtRemoveCallback(control, list, Handlers::chosen, this);
        });
    }
    for (Field& watched : fields_) {
        XtRemoveEventHandler(watched.field.widget(), fieldEvents, False, Handlers::field, &watched);
        watched.field.onRefused = nullptr;
        watched.field.onEdited = nullptr;
    }
}

void zMessageLine::watch(zBoard& board) {
    Board& watched = boards_.emplace_back(Board{*this, board});
    XtAddEventHandler(board.widget(), pointerEvents, False, Handlers::pointer, &watched);
    board.forEach<zEdit>([this](zEdit& field) {
        // Before the field itself: a key takes the last refusal away before it is refused.
        XtInsertEventHandler(field.widget(), fieldEvents, False, Handlers::field,
                             &fields_.emplace_back(Field{*this, field}), XtListHead);
        field.onRefused = [this](const std::string& reason) { refused(reason); };
        field.onEdited = [this] { refresh(); };
    });
    forEachChoice(board, [this](Widget control, const char* list) {
        XtAddCallback(control, list, Handlers::chosen, this);
    });
}

void zMessageLine::refresh() {
    advice_ = advise ? advise(focused_) : Advice{};
    show();
}

void zMessageLine::setProgress(const std::string& text) {
    progress_ = text;
    show();
}

void zMessageLine::pointerAt(const zBoard& board, int x, int y) {
    std::string waits = board.waitsAt(x, y);
    if (waits == waits_) return;
    waits_ = std::move(waits);
    show();
}

void zMessageLine::fieldEvent(const zEdit& field, int type) {
    refusal_.clear();
    if (type == KeyPress) return show();
    if (type == FocusIn)
        focused_ = &field;
    else if (focused_ == &field)
        focused_ = nullptr;
    refresh();
}

void zMessageLine::refused(const std::string& reason) {
    refusal_ = reason;
    show();
}

void zMessageLine::show() {
    std::string now;
    for (const std::string& text : {progress_, refusal_, advice_.field, waits_, advice_.page})
        if (now.empty()) now = text;
    if (now == shown_) return;
    shown_ = now;
    XtVaSetValues(line_, XmNlabelString, zXmText(broken(now)).get(), nullptr);
}

// With line ends where the line is too long for its place.
std::string zMessageLine::broken(const std::string& text) const {
    XmRenderTable font = nullptr;
    Dimension width = 0;
    XtVaGetValues(line_, XmNrenderTable, &font, XmNwidth, &width, nullptr);
    std::istringstream words(text);
    std::string whole, line;
    for (std::string word; words >> word;) {
        const std::string longer = line.empty() ? word : fmt::format("{} {}", line, word);
        if (!line.empty() && XmStringWidth(font, zXmText(longer).get()) > width) {
            whole += line + '\n';
            line = word;
        } else {
            line = longer;
        }
    }
    return whole + line;
}
