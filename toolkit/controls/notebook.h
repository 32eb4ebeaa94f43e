// A notebook: tabs, each with a page made from a layout of its own. The pages belong to the notebook. A page has
// its windows when it is first on top: a dialog that opens pays for one page.
#pragma once

#include "toolkit/controls/board.h"

#include <functional>

class zNotebook : public zControl {
  public:
    zNotebook(Widget board, const zRect& place, const zControlRow& row);

    // Adds a page behind the others; its tab shows the layout's caption.
    zBoard& addPage(const zLayout& layout);

    // The same, but also the controls are made when the page is first on top; `made` is called then.
    void addPage(const zLayout& layout, std::function<void(zBoard&)> made);

    int count() const { return static_cast<int>(pages_.size()); }
    int selected() const;       // position of the page on top, from 0; -1: there is none
    void select(int position);  // calls no handler

    std::function<void(int position)> onSelect;  // another page is on top

    void realized() override;

  private:
    struct Page {
        Widget sheet;  // what the tab shows: the board's parent
        const zLayout& layout;
        std::unique_ptr<zBoard> board;
        std::function<void(zBoard&)> made;
    };

    void make(Page& page);
    void raise();

    zRect place_;
    std::vector<Page> pages_;
};
