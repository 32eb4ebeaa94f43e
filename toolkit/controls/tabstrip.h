// A row of tabs without pages.
#pragma once

#include "toolkit/controls/control.h"

#include <functional>

class zTabStrip : public zControl {
  public:
    zTabStrip(Widget board, const zRect& place, const zControlRow& row);

    // Positions count from 0.
    int selected() const { return selected_; }
    void select(int position);  // does not call onSelect
    int count() const { return static_cast<int>(tabs_.size()); }

    std::function<void(int position)> onSelect;  // the user has selected another tab

    void place(const zRect& place) override;
    void realized() override;

  private:
    zRect place_;
    std::vector<Widget> tabs_;
    int selected_ = 0;
};
