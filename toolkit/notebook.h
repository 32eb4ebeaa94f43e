// A notebook: tabs, each with a page made from a layout of its own. The pages belong to the notebook. Their controls
// are there from the beginning, their windows when they are first on top: a window that opens pays for one page.
#pragma once

#include "toolkit/board.h"

#include <functional>

class zNotebook : public zControl {
  public:
    zNotebook(Widget board, const zRect& place, const zControlRow& row);

    // Adds a page behind the others; its tab shows the layout's caption.
    zBoard& addPage(const zLayout& layout);

    int count() const { return static_cast<int>(pages_.size()); }
    int selected() const;       // position of the page on top, from 0; -1: there is none
    void select(int position);  // calls no handler

    std::function<void(int position)> onSelect;  // another page is on top

    void realized() override;

  private:
    void raise();

    zRect place_;
    std::vector<std::unique_ptr<zBoard>> pages_;
};
