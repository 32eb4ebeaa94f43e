// A list of lines of which one or several can be selected.
#pragma once

#include "toolkit/controls/control.h"

#include <functional>
#include <string>
#include <vector>

class zListBox : public zControl {
  public:
    zListBox(Widget board, const zRect& place, const zControlRow& row);

    // Replaces all lines. Nothing is selected then.
    void setLines(std::vector<std::string> lines);
    int count() const { return static_cast<int>(lines_.size()); }
    std::string line(int position) const;  // empty when there is none

    // Positions count from 0; -1: nothing is selected. select() does not call onSelect.
    void select(int position);
    int selected() const;                  // the first one
    std::vector<int> allSelected() const;  // in ascending order
    Widget outermost() const override;
    void place(const zRect& place) override;

    std::function<void()> onSelect;    // the user has selected a line
    std::function<void()> onActivate;  // double-click, or Return on a line

  protected:
    void point(int x, int y) override;  // the line becomes the selected one
    zRect selectedPlace() const override;

  private:
    zRect place_;
    std::vector<std::string> lines_;
};
