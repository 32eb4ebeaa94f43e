#include "toolkit/controls/board.h"

#include "toolkit/controls/factory.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/library/motion.h"

#include <X11/IntrinsicP.h>  // XtResizeWidget
#include <Xm/BulletinB.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <fmt/format.h>
#include <stdexcept>

namespace {

// Tables have menus, which nobody would look for.
std::string withMenuHint(const char* tooltip) {
    return tooltip ? std::string(tooltip) + " (right button or Menu key: menu)"
                   : "Right button or Menu key opens a menu";
}

Widget makeBoard(Widget parent, const char* name, const zLayout& layout) {
    const char* font = layout.font.weight > zFontRow::normal ? "bold" : "plain";
    zResources resources;
    resources.set(XmNmarginWidth, 0).set(XmNmarginHeight, 0).set(XmNresizePolicy, XmRESIZE_NONE);
    resources.set(XmNautoUnmanage, False).set(XmNdefaultPosition, False);
    resources.setFonts(zDisplayCache::of(XtDisplay(parent)).renderTable(parent, font));
    return XtCreateWidget(name, xmBulletinBoardWidgetClass, parent, resources.args.data(), resources.count());
}

}  // namespace

zBoard::zBoard(Widget parent, const char* name, const zLayout& layout)
    : layout_(layout), widget_(makeBoard(parent, name, layout)), units_(zDialogUnits::ofBoard(widget_)),
      size_(units_.pixels({0, 0, layout.width, layout.height})) {
    XtVaSetValues(widget_, XmNwidth, size_.width, XmNheight, size_.height, nullptr);

    tooltips_ = std::make_unique<zTooltips>(widget_);
    std::shared_ptr<zRadioGroup> group;
    for (const zControlRow& row : layout.rows) {
        controls_.push_back(zCreateControl(widget_, units_, row));
        zControl& control = *controls_.back();
        if (auto* button = dynamic_cast<zRadioButton*>(&control)) {
            if (row.style & zFirstOfGroup) group = std::make_shared<zRadioGroup>();
            button->join(group);
        }
        if (row.style & zDefaultButton) XtVaSetValues(widget_, XmNdefaultButton, control.widget(), nullptr);
        if (row.style & zCancelButton) XtVaSetValues(widget_, XmNcancelButton, control.widget(), nullptr);
        if (row.kind == zKind::table)
            tooltips_->add(control.outermost(), withMenuHint(row.tooltip), zTooltips::Place::outside);
        else if (row.tooltip)
            tooltips_->add(control.outermost(), row.tooltip);
    }
}

zBoard::~zBoard() = default;

void zBoard::load() {
    for (const auto& control : controls_) control->load();
}

void zBoard::store() {
    for (const auto& control : controls_) control->store();
}

const zControl* zBoard::focused() const {
    const Widget focus = XmGetFocusWidget(widget_);
    const auto found =
        std::ranges::find_if(controls_, [focus](const auto& control) { return control->widget() == focus; });
    return found != controls_.end() ? found->get() : nullptr;
}

void zBoard::setTooltipDetail(const zControl& control, const std::string& detail) {
    tooltips_->setDetail(control.outermost(), detail);
}

void zBoard::enable(std::span<const zEnableRow> rows, unsigned conditions, std::span<const zNeedRow> needs) {
    waiting_.clear();
    for (const zEnableRow& row : rows) {
        auto& greyed = control<zControl>(row.id);
        const unsigned lacking = row.needs & ~conditions;
        greyed.enable(!lacking);
        const auto need =
            std::ranges::find_if(needs, [&](const zNeedRow& each) { return each.condition & lacking; });
        if (need != needs.end()) waiting_.push_back({&greyed, need->sentence});
    }
}

const char* zBoard::waitsAt(int x, int y) const {
    const auto found = std::ranges::find_if(
        waiting_, [&](const Waiting& waiting) { return zWidgetHas(waiting.control->outermost(), x, y); });
    return found == waiting_.end() ? "" : found->sentence;
}

void zBoard::grey(bool on) {
    for (const auto& control : controls_) control->grey(on);
}

bool zBoard::stretches() const {
    return std::ranges::any_of(layout_.rows, [](const zControlRow& row) { return row.more != zMore{}; });
}

void zBoard::stretch(int right, int down) {
    // Not asking the parent: a notebook's sheet grants nothing that it has no room for, and some pages are
    // larger.
    XtResizeWidget(widget_, static_cast<Dimension>(size_.width + right),
                   static_cast<Dimension>(size_.height + down), 0);
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        const zMore& more = layout_.rows[i].more;
        if (more == zMore{}) continue;
        zRect place = zPlaceOf(units_, layout_.rows[i]);
        place.x += right * more.right / 100;
        place.width += right * more.wider / 100;
        place.y += down * more.down / 100;
        place.height += down * more.higher / 100;
        controls_[i]->place(place);
    }
}

void zBoard::disable(zControl& control, const char* because) {
    control.enable(false);
    waiting_.push_back({&control, because});
}

void zBoard::realized() const {
    for (const auto& control : controls_) {
        control->realized();
        zPropagateMotion(control->outermost());  // to whoever watches where the pointer is
    }
}

zControl* zBoard::find(int id) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [id](const auto& control) { return control->id() == id; });
    return found == controls_.end() ? nullptr : found->get();
}

zControl* zBoard::find(std::string_view name) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(), [name](const auto& control) {
        return control->id() < 0 && XtName(control->outermost()) == name;
    });
    return found == controls_.end() ? nullptr : found->get();
}

void zBoard::missing(std::string_view control) const {
    throw std::logic_error(
        fmt::format("the layout \"{}\" has no control \"{}\" of the expected kind", layout_.name, control));
}
