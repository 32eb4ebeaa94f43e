#include "toolkit/controls/edit.h"

#include "platform/index.h"
#include "toolkit/controls/fieldmask.h"
#include "toolkit/controls/foreignkey.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/clipboard.h"
#include "toolkit/library/fieldtext.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <Xm/TextF.h>
#include <Xm/VirtKeys.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <fmt/format.h>
#include <utility>

namespace {

// The background from the X resources for this name or the class ReadOnlyField. The resources of XmTextField
// apply to editable fields only.
Pixel readOnlyBackground(Widget board, const std::string& name) {
    static char fallback[] = "#c0c0c0";
    static XtResource resources[] = {
        {XmNbackground, XmCBackground, XmRPixel, sizeof(Pixel), 0, XmRString, fallback}};
    Pixel background = 0;
    XtGetSubresources(board, &background, name.c_str(), "ReadOnlyField", resources, 1, nullptr, 0);
    return background;
}

// For fields whose layout row has no mask.
constexpr zFieldMask anyText{.picture = "[ -~](255)",
                             .takes = "this field has ASCII characters only.",
                             .full = "This field has at most 255 characters."};

// Whether the event that is being handled is one of the whole window: it got the keyboard, or lost it.
bool ofWindow(Widget widget, int focus, int crossing) {
    while (!XtIsShell(widget)) widget = XtParent(widget);
    const XAnyEvent& last = XtLastEventProcessed(XtDisplay(widget))->xany;
    return (last.type == focus || last.type == crossing) && last.window == XtWindow(widget);
}

// Why a character is not taken; `c` is 0 for one beyond ASCII.
std::string misfit(char c, const zFieldMask& mask) {
    std::string name = "This character";
    if (c == ' ') name = "A blank";
    if (c > ' ' && c <= '~') name = fmt::format("\"{}\"", c);
    return fmt::format("{} cannot stand here: {}", name, mask.takes);
}

}  // namespace

struct zEdit::Key {
    KeySym symbol;
    unsigned held;
    void (zEdit::*act)(unsigned long time);
};

struct zEdit::Handlers {
    static void event(Widget, XtPointer self, XEvent* event, Boolean* goesOn) {
        auto& field = *static_cast<zEdit*>(self);
        if (event->type == KeyPress) {
            *goesOn = !press(field, event->xkey);
        } else if (event->xbutton.button == Button1) {
            field.clicked_ = true;
            field.mark_->clear();
        }
    }

    // True: the key was the field's own.
    static bool press(zEdit& field, const XKeyEvent& key) {
        static constexpr Key keys[] = {
            {XK_a, ControlMask, &zEdit::markAll},
            {XK_c, ControlMask, &zEdit::copy},
            {XK_x, ControlMask, &zEdit::cut},
            {XK_v, ControlMask, &zEdit::paste},
            {osfXK_Insert, ControlMask, &zEdit::copy},
            {osfXK_Delete, ShiftMask, &zEdit::cut},
            {osfXK_Insert, ShiftMask, &zEdit::paste},
            {osfXK_Copy, 0, &zEdit::copy},
            {osfXK_Cut, 0, &zEdit::cut},
            {osfXK_Paste, 0, &zEdit::paste},
        };
        static constexpr KeySym caretKeys[] = {osfXK_Left, osfXK_Right, osfXK_BeginLine, osfXK_EndLine};

        Modifiers used = 0;
        KeySym symbol = NoSymbol;
        XtTranslateKeycode(key.display, static_cast<KeyCode>(key.keycode), key.state, &used, &symbol);
        if (symbol >= XK_A && symbol <= XK_Z) symbol += XK_a - XK_A;
        const unsigned held = key.state & (ShiftMask | ControlMask | Mod1Mask);
        const auto row = std::ranges::find_if(
            keys, [&](const Key& each) { return each.symbol == symbol && each.held == held; });
        if (row != std::end(keys)) {
            (field.*row->act)(key.time);
            return true;
        }
        if (std::ranges::find(caretKeys, symbol) != std::end(caretKeys)) field.mark_->clear();
        if (field.readOnly_) return false;
        if (*field.mark_ && (symbol == osfXK_Delete || symbol == osfXK_BackSpace)) {
            field.replace(field.marked(), "");
            return true;
        }
        if (!zIsForeign(symbol, held)) return false;
        field.refuse(misfit('\0', *field.mask_));
        return true;
    }
};

zEdit::zEdit(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), readOnly_(row.style & zReadOnly), mask_(row.mask ? row.mask : &anyText),
      self_(this, [](zEdit*) {}) {
    zResources resources(place);
    if (readOnly_) {
        resources.set(XmNeditable, False).set(XmNcursorPositionVisible, False);
        resources.set(XmNbackground, static_cast<XtArgVal>(readOnlyBackground(board, zWidgetName(row))));
    }
    resources.set(XmNvalue, reinterpret_cast<XtArgVal>(row.text)).set(XmNmarginHeight, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP).set(XmNverifyBell, False);  // refuse() rings
    attach(zMakeWidget(xmTextFieldWidgetClass, board, row, resources));
    shown_ = row.text;
    mark_.emplace(widget());
    look_.emplace(widget());

    // XmTextField draws its line below the top margin: centre it in the height from the layout.
    XtVaSetValues(widget(), XmNmarginHeight, zCentredMargin(widget(), place.height), nullptr);
    zSetGeometry(widget(), place);

    XtInsertEventHandler(widget(), KeyPressMask | ButtonPressMask, False, Handlers::event, this, XtListHead);
    listen(XmNfocusCallback, [](zControl& self, void*) { static_cast<zEdit&>(self).entered(); });
    listen(XmNlosingFocusCallback, [](zControl& self, void*) { static_cast<zEdit&>(self).leaving(); });
    if (readOnly_) return;
    picture_.emplace(mask_->picture);
    listen(XmNmodifyVerifyCallback,
           [](zControl& self, void* data) { static_cast<zEdit&>(self).verify(data); });
    listen(XmNvalueChangedCallback, [](zControl& self, void*) {
        if (auto& field = static_cast<zEdit&>(self); !field.byProgram_) field.edited();
    });
}

zEdit::~zEdit() {
    XtRemoveEventHandler(widget(), KeyPressMask | ButtonPressMask, False, Handlers::event, this);
}

void zEdit::enable(bool on) {
    zControl::enable(on);
    look_->grey(!on);
}

void zEdit::setText(const std::string& value) {
    std::string shown = value;
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    if (zFieldHolds(widget(), shown) || (readOnly_ && zReplaceReadText(widget(), shown))) return;
    const bool marked = readOnly_ && *mark_;  // a live value: it is copied as it stands
    mark_->clear();
    byProgram_ = true;
    XmTextFieldSetString(widget(), shown.data());
    byProgram_ = false;
    if (marked) mark_->set(0, shown.size());
}

std::string zEdit::text() const {
    const std::unique_ptr<char, void (*)(char*)> held(XmTextFieldGetString(widget()), XtFree);
    return held.get();
}

void zEdit::show(const std::string& value) {
    setText(value);
    shown_ = text();
}

void zEdit::load() {
    if (variable_) show(picture_ ? picture_->format(*variable_) : *variable_);
}

void zEdit::store() {
    if (!variable_ || !changed()) return;
    complete();
    if (!changed()) return;
    storeInto(variable_);
    shown_ = text();
}

void zEdit::storeInto(zVariable variable) const {
    const std::string now = text();
    if (!changed() || (now.empty() && picture_ && picture_->isAddress())) return;
    *std::get<std::string*>(variable) = picture_ ? picture_->bare(picture_->completed(now, padded_)) : now;
}

// Completes a changed address; true if anything was missing.
bool zEdit::complete() {
    if (!picture_ || !picture_->isAddress() || !changed()) return false;
    const std::string now = text();
    setText(now.empty() ? shown_ : picture_->completed(now, padded_));
    padded_ = false;
    return text() != now;
}

void zEdit::entered() {
    const bool back = std::exchange(windowGone_, false) && ofWindow(widget(), FocusIn, EnterNotify);
    if (!back && !clicked_) markAll(CurrentTime);
}

// A window that loses the keyboard leaves its field half filled and marked as it is.
void zEdit::leaving() {
    windowGone_ = ofWindow(widget(), FocusOut, LeaveNotify);
    if (windowGone_) return;
    clicked_ = false;
    mark_->clear();
    const std::string typed = text();
    if (!complete()) return;
    const std::string now = text();
    const std::size_t from = asIndex(std::ranges::mismatch(typed, now).in2 - now.begin());
    if (!typed.empty()) mark_->leave(from, from + now.size() - typed.size());
    if (onEdited) onEdited();
}

void zEdit::markAll(unsigned long /*time*/) {
    const std::size_t end = text().size();
    if (!readOnly_) XmTextFieldSetInsertionPosition(widget(), static_cast<XmTextPosition>(end));
    mark_->set(0, end);
}

void zEdit::copy(unsigned long time) {
    const auto [start, end] = marked();
    if (start < end) zCopyToClipboard(widget(), text().substr(start, end - start), time);
}

void zEdit::cut(unsigned long time) {
    copy(time);
    if (const Range range = marked(); !readOnly_ && range.start < range.end) replace(range, "");
}

void zEdit::paste(unsigned long time) {
    if (readOnly_) return refuse("This field is for reading only.");
    zPasteFromClipboard(
        widget(),
        [weak = std::weak_ptr(self_)](const std::string& text) {
            const auto field = weak.lock();
            if (!field) return;
            if (text.empty()) return field->refuse("The clipboard holds no text.");
            field->replace(field->marked(), text);
        },
        time);
}

zEdit::Range zEdit::marked() const {
    if (*mark_) return {mark_->from(), mark_->to()};
    XmTextPosition left = 0, right = 0;
    if (!XmTextFieldGetSelectionPosition(widget(), &left, &right) || left == right)
        left = right = XmTextFieldGetInsertionPosition(widget());
    return {asIndex(left), asIndex(right)};
}

void zEdit::replace(const Range& range, std::string_view typed) {
    if (const auto edit = edited(range, typed, range.end)) apply(*edit);
}

// The field after an edit, in which a pasted address takes the place of everything; none: it was refused.
std::optional<zPicture::Edit> zEdit::edited(const Range& range, std::string_view typed, std::size_t caret) {
    if (typed.size() > 1 && mask_->paste) {
        const zPasted pasted = mask_->paste(typed);
        if (!pasted.refusal.empty()) return refuse(pasted.refusal), std::nullopt;
        if (!pasted.partner.empty() && onPartner) onPartner(pasted.partner);
        return zPicture::Edit{.text = pasted.text, .caret = pasted.text.size()};
    }
    zPicture::Edit edit = picture_->edit(text(), range.start, range.end, typed, caret);
    if (edit) {
        padded_ = edit.padded || (padded_ && !edit.text.empty());
        return edit;
    }
    refuse(edit.refusal == zPicture::Refusal::full ? mask_->full : misfit(edit.misfit, *mask_));
    return {};
}

void zEdit::apply(const zPicture::Edit& edit) {
    setText(edit.text);
    mark_->clear();
    XmTextFieldSetInsertionPosition(widget(), static_cast<XmTextPosition>(edit.caret));
    edited();
}

void zEdit::edited() {
    XmTextFieldShowPosition(widget(), XmTextFieldGetInsertionPosition(widget()));
    if (onEdited) onEdited();
}

void zEdit::refuse(const std::string& reason) {
    constexpr int softer = -50;  // in percent of what the user has set
    XBell(XtDisplay(widget()), softer);
    if (onRefused) onRefused(reason);
}

void zEdit::verify(void* callData) {
    if (byProgram_) return;
    auto& change = *static_cast<XmTextVerifyCallbackStruct*>(callData);
    const std::string typed(change.text->ptr ? change.text->ptr : "",
                            change.text->ptr ? asIndex(change.text->length) : 0);
    change.doit = False;
    if (typed.size() == 1 && std::iscntrl(static_cast<unsigned char>(typed[0]))) return;  // not a character
    Range range{asIndex(change.startPos), asIndex(change.endPos)};
    if (*mark_) range = marked();
    const std::size_t before = text().size();
    const auto edit = edited(range, typed, *mark_ ? range.end : asIndex(change.currInsert));
    if (!edit) return;
    // After a deletion XmTextField would put the caret where the old text ended, and what replaces marked
    // text it would not paint where the mark began.
    if (typed.empty() || *mark_) return apply(*edit);
    // Replace the whole text, since fixed characters may move.
    change.doit = True;
    change.startPos = 0;
    change.endPos = static_cast<XmTextPosition>(before);
    XtFree(change.text->ptr);
    change.text->ptr = XtNewString(edit->text.c_str());
    change.text->length = static_cast<int>(edit->text.size());
    change.newInsert = static_cast<XmTextPosition>(edit->caret);
}

void zNumberEdit::load() {
    if (variable_) show(std::to_string(variable_.getUnsigned()));
}

void zNumberEdit::store() {
    if (!variable_ || !changed() || text().empty()) return;
    variable_.set(number());
    show(text());
}

void zNumberEdit::storeInto(zVariable variable) const {
    zBoundNumber other;
    other.bind(variable);
    if (changed() && !text().empty()) other.set(number());
}

unsigned zNumberEdit::number() const {
    const std::string digits = text();
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

void zNumberEdit::setNumber(unsigned value) {
    setText(std::to_string(value));
}
