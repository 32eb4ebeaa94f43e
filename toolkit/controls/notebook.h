// A notebook: tabs, each with a page that has its own layout. The notebook owns the pages. A page is realized
// when it is first on top, so that opening a dialog costs one page only.
#pragma once

#include "toolkit/controls/board.h"

#include <functional>

class zNotebook : public zControl {
  public:
    zNotebook(Widget board, const zRect& place, const zControlRow& row);

    // Appends a page. Its tab shows the layout's caption.
    zBoard& addPage(const zLayout& layout);

    // The same, but its controls, too, are created when the page is first on top. `made` is called then.
    void addPage(const zLayout& layout, std::function<void(zBoard&)> made);

    int count() const { return static_cast<int>(pages_.size()); }
    int selected() const;       // position of the page on top, from 0; -1: there is none
    void select(int position);  // does not call onSelect

    std::function<void(int position)> onSelect;  // the user has turned to another page

    void place(const zRect& place) override;  // its pages grow with it
    void realized() override;

  private:
    struct Page {
        Widget sheet;  // the child of the tab stack, parent of the board
        const zLayout& layout;
        std::unique_ptr<zBoard> board;
        std::function<void(zBoard&)> made;
    };

    void make(Page& page);
    void raise();
    void fill(zBoard& board) const;

    const zRect layoutPlace_;
    zRect place_;
    std::vector<Page> pages_;
};
