// Drop-down lists.
#pragma once

#include "toolkit/controls/control.h"

#include <functional>

class zDropDown : public zControl {
  public:
    // Dialog units: a line of text with the field's shadows. A row's height includes the open list.
    static constexpr int closedHeight = 14;

    // `place` is that of the closed list.
    zDropDown(Widget board, const zRect& place, const zControlRow& row);

    // Bound to a number: the position of the item, from 0. A position without an item shows an empty field.
    void bind(zVariable variable) override { variable_.bind(variable); }
    void load() override;
    void store() override;

    int selected() const;       // -1: none
    void select(int position);  // does not call onSelect

    std::function<void()> onSelect;  // the user has selected another item

  private:
    void changed();

    int count_;
    zBoundNumber variable_;
    int shown_ = -1;
    int reported_ = 0;  // the position at the last call of onSelect or select()
    bool open_ = false;
    bool byProgram_ = false;
};
