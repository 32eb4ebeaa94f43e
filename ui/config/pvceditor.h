// Connects the Add, Modify and Delete buttons of a page with its list of PVCs. A change is sent to the
// running driver first; if that fails, the static configuration is changed if the user agrees.
#pragma once

#include "driver/requestblocks.h"
#include "platform/index.h"
#include "toolkit/controls/button.h"
#include "ui/config/confids.h"
#include "ui/config/listedit.h"
#include "ui/mytable.h"
#include "ui/subdialog.h"

#include <functional>
#include <memory>
#include <vector>

template <class Pvc> class PvcEditor {
  public:
    // What a page provides.
    struct Page {
        std::function<std::vector<Pvc>&()> list;            // the list of the shown transfer buffer
        std::function<int(const Pvc&, PvcChange)> request;  // sends a change
        // Runs the sub-dialog on the exchange record, which takes the place of `replaced`, if that is not
        // null. What comes back keeps the dialog on the screen; null: cancelled.
        std::function<std::unique_ptr<SubDialog>(const Pvc* replaced)> edit;
        std::function<void()> update;  // called after each change of the list
    };

    // `exchange` is the record that page and sub-dialog share. All references must outlive the editor.
    PvcEditor(zWindow& window, const zBoard& board, const myTable& table, Pvc& exchange, Page page)
        : window_(window), table_(table), exchange_(exchange), page_(std::move(page)) {
        board.control<zBitmapButton>(addBTN).onClick = [this] { clickedAddBTN(); };
        board.control<zBitmapButton>(modifyBTN).onClick = [this] { clickedModifyBTN(); };
        board.control<zBitmapButton>(deleteBTN).onClick = [this] { clickedDeleteBTN(); };
    }

  private:
    void clickedAddBTN() {
        const auto dialog = page_.edit(nullptr);
        if (!dialog || !change(exchange_, PvcChange::add, "Add")) return;
        page_.list().push_back(exchange_);
        page_.update();
    }

    void clickedModifyBTN() {
        Pvc* pvc = selected();
        if (!pvc) return;
        exchange_ = *pvc;
        const auto dialog = page_.edit(pvc);
        if (!dialog || !change(exchange_, PvcChange::modify, "Modify")) return;
        *pvc = exchange_;
        page_.update();
    }

    void clickedDeleteBTN() {
        const Pvc* pvc = selected();
        if (!pvc || !change(*pvc, PvcChange::remove, "Delete")) return;
        page_.list().erase(page_.list().begin() + (pvc - page_.list().data()));
        page_.update();
    }

    Pvc* selected() const {
        std::vector<Pvc>& list = page_.list();
        const int row = table_.activeCell().row;
        return row >= 1 && asIndex(row) <= list.size() ? &list[asIndex(row - 1)] : nullptr;
    }

    // True if the driver accepted the change or the user agrees to change the static configuration only.
    bool change(const Pvc& pvc, PvcChange change, const char* verb) {
        const bool taken = page_.request(pvc, change) == 0;
        return taken || agreesToStatic(window_, verb, "PVC", "PVC Error");
    }

    zWindow& window_;
    const myTable& table_;
    Pvc& exchange_;
    Page page_;
};
