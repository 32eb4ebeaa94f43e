// The base of the configuration notebook's pages; confdlg.h lists their operations.
//
// A page and its state are created with the dialog. Its controls are created when it is first on top, and are
// bound to the fields of the transfer buffer that they show.
#pragma once

#include "platform/debuglog.h"
#include "toolkit/controls/board.h"
#include "toolkit/controls/button.h"
#include "ui/advice.h"

#include <functional>
#include <string>

class ConfigPage {
  public:
    virtual ~ConfigPage() = default;
    ConfigPage(const ConfigPage&) = delete;
    ConfigPage& operator=(const ConfigPage&) = delete;

    // Called once, when the controls have been created. The board must outlive the page.
    void attach(zBoard& board) {
        board_ = &board;
        connect();
    }

    virtual void storeDefaults() { storeControls(); }
    virtual void ToggleControls() = 0;

    // For advice: writes what the page shows into the records, as far as it has controls; the name of the
    // service that it shows, as in paths; and its fields with their settings.
    virtual void putShown(AdapterRecords& records) const = 0;
    virtual std::string service() const = 0;
    virtual std::span<const AdvisedField> advisedFields() const = 0;

    // Called when the page shows something else, in a way that no control tells of.
    std::function<void()> onChanged;

  protected:
    ConfigPage() = default;

    // Binds and loads the controls, fills tables and lists, registers handlers.
    virtual void connect() = 0;

    void changed() const {
        if (onChanged) onChanged();
    }
    bool attached() const { return board_ != nullptr; }
    zBoard& board() const { return *board_; }
    template <class Control> Control& control(int id) const { return board_->control<Control>(id); }
    bool checked(int id) const { return control<zCheckBox>(id).checked(); }

    // A click on the check box only changes which controls are usable.
    void togglesControls(int checkBox) {
        control<zCheckBox>(checkBox).onClick = [this] { ToggleControls(); };
    }

    // Stores what the user changed in the buffer: nothing, if the page was never on top.
    void storeControls() const {
        if (board_) board_->store();
    }

  private:
    zBoard* board_ = nullptr;
};

// What an attached page shows, as a record: its buffer with what the user has changed on the controls since.
template <class Buffer>
Buffer shownOn(const zBoard& board, const Buffer& stored, std::span<const zBindingRow<Buffer>> fields) {
    Buffer shown = stored;
    board.storeInto(shown, fields);
    return shown;
}

// A page that shows one of several instances of a service, chosen with a tab strip. Instances count from 0.
class InstancePage : public ConfigPage {
  public:
    int current() const { return current_; }

    // Loads the page's state from an instance and binds the controls, if there are any. The first instance is
    // set up twice: in the constructor, since OK stores a page without controls, too, and when they exist.
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
    // Refills the page's table or list from an instance.
    virtual void refill(int i) = 0;

    // Stores this instance and shows the next one.
    void turnTo(int next) {
        storeDefaults(current_);
        current_ = next;  // before controls that are loaded ask for advice
        setDefaults(next);
        ToggleControls();
        changed();
    }

  private:
    int current_ = 0;
};
