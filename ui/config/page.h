// What the pages of the configuration notebook have in common. A page follows the protocol of confdlg.h and has its
// fields as a table, `fields`.
#pragma once

#include "platform/debuglog.h"
#include "toolkit/controls/button.h"
#include "ui/config/fieldtable.h"

template <class Page, class Buffer> class ConfigPage {
  public:
    // Of a page that shows one of several instances: the one that is shown, from 0.
    int current() const { return current_; }

  protected:
    explicit ConfigPage(zBoard& board) : board_(board) {}

    // The variables have their first values: binds the controls to them and shows them.
    void bind() {
        bindFields<Page, Buffer>(page(), board_, Page::fields);
        board_.load();
    }

    void take(const Buffer& buffer) { fieldsFromBuffer<Page, Buffer>(page(), buffer, Page::fields); }
    void give(Buffer& buffer) {
        board_.store();
        fieldsToBuffer<Page, Buffer>(page(), buffer, Page::fields);
    }

    // setDefaults of a page with one instance, without what is not a field.
    void showDefaults() {
        tvlog << "Setting Defaults" << std::endl;
        page().Setup();
        board_.load();
    }
    // The same for instance `i`.
    void showDefaults(int i) {
        tvlog << "Setting Defaults " << i << std::endl;
        page().Setup(i);
        board_.load();
    }

    // Another tab of the page's tab strip was selected: the shown instance goes into its buffer, the other one on
    // the page.
    void turnTo(int next) {
        page().storeDefaults(current_);
        page().setDefaults(next);
        current_ = next;
        page().ToggleControls();
    }

    template <class Control> void onClick(int id, void (Page::*handler)()) {
        board_.template control<Control>(id).onClick = [this, handler] { (page().*handler)(); };
    }
    bool checked(int id) const { return board_.template control<zCheckBox>(id).checked(); }

    zBoard& board_;

  private:
    Page& page() { return static_cast<Page&>(*this); }

    int current_ = 0;
};
