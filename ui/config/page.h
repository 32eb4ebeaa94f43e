// What the pages of the configuration notebook have in common.
//
// A page exists, with its state, from the moment its dialog is built. Its controls are made when it is first on top;
// they are bound to the fields of the transfer buffer that they show. A page follows the protocol of confdlg.h.
#pragma once

#include "platform/debuglog.h"
#include "toolkit/controls/board.h"
#include "toolkit/controls/button.h"

class ConfigPage {
  public:
    virtual ~ConfigPage() = default;
    ConfigPage(const ConfigPage&) = delete;
    ConfigPage& operator=(const ConfigPage&) = delete;

    // Called once, when the controls have been made: shows the buffer on them. The board must outlive the page.
    void attach(zBoard& board) {
        board_ = &board;
        connect();
    }

    virtual void storeDefaults() = 0;
    virtual void ToggleControls() = 0;

  protected:
    ConfigPage() = default;

    // Binds and loads the controls, fills tables and lists, registers the handlers.
    virtual void connect() = 0;

    bool attached() const { return board_ != nullptr; }
    zBoard& board() const { return *board_; }
    template <class Control> Control& control(int id) const { return board_->control<Control>(id); }
    bool checked(int id) const { return control<zCheckBox>(id).checked(); }

    // Most check boxes decide only what else can be used.
    void togglesControls(int checkBox) {
        control<zCheckBox>(checkBox).onClick = [this] { ToggleControls(); };
    }

    // What the user changed goes into the buffer. Nothing was changed on controls that were never made.
    void storeControls() const {
        if (board_) board_->store();
    }

  private:
    zBoard* board_ = nullptr;
};

// A page that shows one of several instances of a service, chosen with a tab strip. Instances count from 0.
class InstancePage : public ConfigPage {
  public:
    int current() const { return current_; }

    virtual void Setup(int i) = 0;
    virtual void storeDefaults(int i) = 0;
    void storeDefaults() override { storeDefaults(current_); }

    void setDefaults(int i) {
        tvlog << "Setting Defaults " << i << std::endl;
        Setup(i);
        board().load();
        refill(i);
    }

  protected:
    // Shows the list of an instance.
    virtual void refill(int i) = 0;

    // Another tab was selected: the instance that is shown goes into its buffer, the other one onto the page.
    void turnTo(int next) {
        storeDefaults(current_);
        setDefaults(next);
        current_ = next;
        ToggleControls();
    }

  private:
    int current_ = 0;
};
