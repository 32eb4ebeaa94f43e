// The controls of one layout on one board: a window's, or a notebook page's.
#pragma once

#include "toolkit/controls/choice.h"
#include "toolkit/controls/control.h"
#include "toolkit/controls/layout.h"
#include "toolkit/controls/tooltip.h"
#include "toolkit/display/widget.h"

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// A control and the page's variable that it is bound to.
template <class Page> struct zBindingRow {
    int id;
    std::variant<int Page::*, unsigned Page::*, std::string Page::*> variable;
};

// A control that is enabled while all of the conditions in `needs` hold. The conditions are bits of the page's
// own choice.
struct zEnableRow {
    int id;
    unsigned needs;
};

class zBoard {
  public:
    // Makes the board widget, not managed yet, and its controls in it. Everything goes with the object except
    // the widgets, which go with their shell.
    zBoard(Widget parent, const char* name, const zLayout& layout);
    ~zBoard();
    zBoard(const zBoard&) = delete;
    zBoard& operator=(const zBoard&) = delete;

    Widget widget() const { return widget_; }
    const zRect& size() const { return size_; }  // pixels

    // The control with this id, or of those without one with this name. The layout must have it, as this kind.
    template <typename Kind> Kind& control(int id) const { return as<Kind>(find(id)); }
    template <typename Kind> Kind& control(std::string_view name) const { return as<Kind>(find(name)); }
    // The group that a radio button belongs to.
    zRadioGroup& group(int id) const { return control<zRadioButton>(id).group(); }

    template <class Page> void bind(Page& page, std::span<const zBindingRow<Page>> rows) {
        for (const auto& row : rows)
            std::visit([&](auto member) { control<zControl>(row.id).bind(&(page.*member)); }, row.variable);
    }
    // Every bound control.
    void load();
    void store();

    void enable(std::span<const zEnableRow> rows, unsigned conditions);

    // To be called once, when the controls have their windows.
    void realized() const;

  private:
    zControl* find(int id) const;
    zControl* find(std::string_view name) const;
    template <typename Kind> static Kind& as(zControl* control) {
        auto* found = dynamic_cast<Kind*>(control);
        if (!found) throw std::logic_error("no such control in the layout");
        return *found;
    }

    Widget widget_;
    zRect size_;
    std::vector<std::unique_ptr<zControl>> controls_;
    std::unique_ptr<zTooltips> tooltips_;
};
