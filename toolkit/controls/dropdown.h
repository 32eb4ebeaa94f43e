// Drop-down lists.
#pragma once

#include "toolkit/controls/control.h"

#include <functional>

class zDropDown : public zControl {
  public:
    // `place` is that of the closed list.
    zDropDown(Widget board, const zRect& place, const zControlRow& row);

    // What a row's place, which includes the open list, leaves of the closed one. In dialog units.
    static zRect closed(const zRect& place);

    // Bound to the position of the item, from 0. A position that has no item shows nothing.
    void bind(zVariable variable) override { variable_ = std::get<int*>(variable); }
    void load() override;
    void store() override;

    int selected() const;       // -1: none
    void select(int position);  // calls no handler

    std::function<void()> onSelect;

  private:
    void changed();

    int count_;
    int* variable_ = nullptr;
    int shown_ = -1;
    int told_ = 0;  // the position that the handler knows
    bool open_ = false;
    bool byProgram_ = false;
};
