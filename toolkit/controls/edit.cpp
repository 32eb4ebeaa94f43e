#include "toolkit/controls/edit.h"

#include "platform/index.h"
#include "toolkit/controls/rowwidget.h"

#include <Xm/TextF.h>
#include <algorithm>
#include <charconv>
#include <cstring>

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

}  // namespace

zEdit::zEdit(Widget board, const zRect& place, const zControlRow& row)
    : zControl(row), readOnly_(row.style & zReadOnly) {
    zResources resources(place);
    if (readOnly_) {
        resources.set(XmNeditable, False).set(XmNcursorPositionVisible, False);
        resources.set(XmNbackground, static_cast<XtArgVal>(readOnlyBackground(board, zWidgetName(row))));
    }
    resources.set(XmNvalue, reinterpret_cast<XtArgVal>(row.text)).set(XmNmarginHeight, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    attach(zMakeWidget(xmTextFieldWidgetClass, board, row, resources));
    shown_ = row.text;

    // XmTextField draws its line below the top margin: centre it in the height from the layout.
    XtVaSetValues(widget(), XmNmarginHeight, zCentredMargin(widget(), place.height), nullptr);
    zSetGeometry(widget(), place);

    if (!row.mask) return;
    picture_.emplace(row.mask);
    XtVaSetValues(widget(), XmNverifyBell, False, nullptr);  // verify() rings itself
    listen(XmNmodifyVerifyCallback,
           [](zControl& self, void* data) { static_cast<zEdit&>(self).verify(data); });
    listen(XmNlosingFocusCallback, [](zControl& self, void*) { static_cast<zEdit&>(self).complete(); });
}

void zEdit::setText(const std::string& value) {
    std::string shown = value;
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    if (shown == text()) return;
    byProgram_ = true;
    XmTextFieldSetString(widget(), shown.data());
    byProgram_ = false;
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
    *variable_ = picture_ ? picture_->bare(picture_->completed(text())) : text();
    shown_ = text();
}

// Completes the address when the field is left.
void zEdit::complete() {
    if (!picture_ || !picture_->isAddress() || !changed()) return;
    const std::string now = text();
    setText(now.empty() ? shown_ : picture_->completed(now));
}

void zEdit::verify(void* callData) {
    if (byProgram_) return;
    auto& change = *static_cast<XmTextVerifyCallbackStruct*>(callData);
    const std::string typed(change.text->ptr ? change.text->ptr : "",
                            change.text->ptr ? asIndex(change.text->length) : 0);
    const std::string before = text();
    const auto edit = picture_->edit(before, asIndex(change.startPos), asIndex(change.endPos), typed,
                                     asIndex(change.currInsert));
    if (!edit) {
        change.doit = False;
        XBell(XtDisplay(widget()), 0);
        return;
    }
    if (typed.empty()) {
        // XmTextField would put the caret where the old text ended: refuse the deletion, set the text here.
        change.doit = False;
        setText(edit->text);
        XmTextFieldSetInsertionPosition(widget(), static_cast<XmTextPosition>(edit->caret));
        return;
    }
    // Replace the whole text, since fixed characters may move.
    change.startPos = 0;
    change.endPos = static_cast<XmTextPosition>(before.size());
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

unsigned zNumberEdit::number() const {
    const std::string digits = text();
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

void zNumberEdit::setNumber(unsigned value) {
    setText(std::to_string(value));
}
