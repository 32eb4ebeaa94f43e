// A board: the widget that holds the controls of one layout, in a window or on a notebook page.
#pragma once

#include "toolkit/controls/choice.h"
#include "toolkit/controls/control.h"
#include "toolkit/controls/dialogunits.h"
#include "toolkit/controls/layout.h"
#include "toolkit/controls/tooltip.h"
#include "toolkit/display/widget.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

// A control and the member of an object (a page, a transfer buffer) that it is bound to. A radio group is
// bound by the id of any of its buttons.
template <class Object> struct zBindingRow {
    int id;
    std::variant<int Object::*, unsigned Object::*, std::int16_t Object::*, std::string Object::*> variable;
};

// A control that is enabled while all conditions in `needs` hold. The page decides what the bits mean.
struct zEnableRow {
    int id;
    unsigned needs;
};

// What the user has to do for a condition to hold.
struct zNeedRow {
    unsigned condition;
    const char* sentence;
};

class zBoard {
  public:
    // Creates the board widget, not managed yet, and the controls of `layout`, which must outlive the board.
    // The widgets are destroyed with their shell, everything else with this object.
    zBoard(Widget parent, const char* name, const zLayout& layout);
    ~zBoard();
    zBoard(const zBoard&) = delete;
    zBoard& operator=(const zBoard&) = delete;

    Widget widget() const { return widget_; }
    const zRect& size() const { return size_; }  // of the layout, in pixels
    const zDialogUnits& units() const { return units_; }

    // Whether controls take part in a board that is larger than its layout (zMore).
    bool stretches() const;
    // Makes a board so much larger than its layout, in pixels, and places its controls.
    void stretch(int right, int down);

    // The control with this id, or the one without an id that has this name. Throws std::logic_error if the
    // layout has no such control of this kind.
    template <typename Kind> Kind& control(int id) const {
        return as<Kind>(find(id), "id" + std::to_string(id));
    }
    template <typename Kind> Kind& control(std::string_view name) const { return as<Kind>(find(name), name); }
    template <typename Kind, typename Visit> void forEach(const Visit& visit) const {
        for (const auto& control : controls_)
            if (auto* found = dynamic_cast<Kind*>(control.get())) visit(*found);
    }
    // The group that a radio button belongs to.
    zRadioGroup& group(int id) const { return control<zRadioButton>(id).group(); }

    // The one that has the keyboard focus; null: none of this board.
    const zControl* focused() const;

    // Binds controls to members of `object`; again with another object as often as needed (see control.h).
    template <class Object>
    void bind(Object& object, std::span<const zBindingRow<std::type_identity_t<Object>>> rows) {
        for (const auto& row : rows)
            std::visit([&](auto member) { control<zControl>(row.id).bind(&(object.*member)); }, row.variable);
    }
    // These act on every bound control.
    void load();
    void store();

    // Writes what bind() to this object and store() would write into it, and leaves all else as it is.
    template <class Object>
    void storeInto(Object& object, std::span<const zBindingRow<std::type_identity_t<Object>>> rows) const {
        for (const auto& row : rows)
            std::visit([&](auto member) { control<zControl>(row.id).storeInto(&(object.*member)); },
                       row.variable);
    }

    // Says something of a control in its tooltip, after the text of its row, if it has one.
    void setTooltipDetail(const zControl& control, const std::string& detail);

    // `needs`, which must outlive the board, are looked through in their order.
    void enable(std::span<const zEnableRow> rows, unsigned conditions, std::span<const zNeedRow> needs = {});
    // The sentence of what the greyed control at this place of the board waits for, or an empty one.
    const char* waitsAt(int x, int y) const;
    void grey(bool on);  // every control that can be greyed

    // One that nothing enables, with a sentence why.
    void disable(zControl& control, const char* because);

    // Call it once, when the controls are realized.
    void realized() const;

  private:
    zControl* find(int id) const;
    zControl* find(std::string_view name) const;
    template <typename Kind> Kind& as(zControl* control, std::string_view name) const {
        if (auto* found = dynamic_cast<Kind*>(control)) return *found;
        missing(name);
    }
    [[noreturn]] void missing(std::string_view control) const;

    const zLayout& layout_;
    Widget widget_;
    zDialogUnits units_;
    zRect size_;
    std::vector<std::unique_ptr<zControl>> controls_;
    std::unique_ptr<zTooltips> tooltips_;
    struct Waiting {
        const zControl* control;
        const char* sentence;
    };
    std::vector<Waiting> waiting_;  // greyed controls
};
