#include "toolkit/controls/choice.h"

#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/fonts.h"

#include <Xm/ToggleB.h>

namespace {

Widget makeToggle(Widget board, const zRect& place, const zControlRow& row, unsigned char indicator) {
    const zXmText text(row.text);
    zResources resources(place);
    resources.set(XmNlabelString, text).set(XmNrecomputeSize, False).set(XmNindicatorType, indicator);
    resources.set(XmNalignment, XmALIGNMENT_BEGINNING).set(XmNmarginWidth, 0).set(XmNmarginHeight, 0);
    resources.set(XmNmarginTop, 0).set(XmNmarginBottom, 0);
    resources.set(XmNnavigationType, XmEXCLUSIVE_TAB_GROUP);
    constexpr int gap = 4;  // between the indicator and its text
    resources.set(XmNspacing, static_cast<XtArgVal>(zDialogUnits::ofBoard(board).grown(gap)));
    const bool round = indicator == XmONE_OF_MANY_ROUND;
    resources.set(XmNindicatorOn, round ? XmINDICATOR_FILL : XmINDICATOR_CHECK_BOX);
    const Widget toggle = zMakeWidget(xmToggleButtonWidgetClass, board, row, resources);
    // The frame of the focus would cover the feet of small letters.
    if (place.height < zUsualTextHeight)
        zSetGeometry(toggle, {place.x, place.y - 1, place.width, place.height + 2});
    if (!round) return toggle;
    Pixel ink = 0;  // of the dot, as of the text
    XtVaGetValues(toggle, XmNforeground, &ink, nullptr);
    XtVaSetValues(toggle, XmNselectColor, ink, nullptr);
    return toggle;
}

}  // namespace

zCheckBox::zCheckBox(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    attach(makeToggle(board, place, row, XmN_OF_MANY));
    listen(XmNvalueChangedCallback, [](zControl& self, void*) {
        if (const auto handler = static_cast<zCheckBox&>(self).onClick) handler();
    });
}

void zCheckBox::load() {
    if (variable_) check(variable_.get() != 0);
    shown_ = checked();
}

void zCheckBox::store() {
    if (!variable_ || checked() == shown_) return;
    shown_ = checked();
    variable_.set(shown_);
}

void zCheckBox::storeInto(zVariable variable) const {
    zBoundNumber other;
    other.bind(variable);
    if (checked() != shown_) other.set(checked());
}

bool zCheckBox::checked() const {
    return XmToggleButtonGetState(widget());
}

void zCheckBox::check(bool on) {
    XmToggleButtonSetState(widget(), on, False);
}

void zRadioGroup::load() {
    if (variable_) choose(variable_.get());
    shown_ = chosen_;
}

void zRadioGroup::store() {
    if (!variable_ || chosen_ == shown_) return;
    shown_ = chosen_;
    variable_.set(static_cast<unsigned>(chosen_));
}

void zRadioGroup::storeInto(zVariable variable) const {
    zBoundNumber other;
    other.bind(variable);
    if (chosen_ != shown_) other.set(static_cast<unsigned>(chosen_));
}

void zRadioGroup::choose(int id) {
    chosen_ = 0;
    for (zRadioButton* button : buttons_) {
        button->set(button->id() == id);
        if (button->id() == id) chosen_ = id;
    }
}

void zRadioGroup::clicked(int id) {
    choose(id);  // also on the chosen button, which the click has switched off
    if (const auto handler = onClick) handler(id);
}

zRadioButton::zRadioButton(Widget board, const zRect& place, const zControlRow& row) : zControl(row) {
    attach(makeToggle(board, place, row, XmONE_OF_MANY_ROUND));
    listen(XmNvalueChangedCallback, [](zControl& self, void*) {
        const auto& button = static_cast<zRadioButton&>(self);
        button.group_->clicked(button.id());
    });
}

void zRadioButton::join(std::shared_ptr<zRadioGroup> group) {
    group_ = std::move(group);
    group_->buttons_.push_back(this);
}

void zRadioButton::load() {
    if (group_->buttons_.front() == this) group_->load();
}

void zRadioButton::store() {
    if (group_->buttons_.front() == this) group_->store();
}

void zRadioButton::set(bool on) {
    XmToggleButtonSetState(widget(), on, False);
}
