// Check boxes and radio buttons.
#pragma once

#include "toolkit/controls/control.h"

#include <functional>
#include <memory>
#include <vector>

// Bound to a number: 0 and 1. Any other value shows as checked and stays until the user clicks.
class zCheckBox : public zControl {
  public:
    zCheckBox(Widget board, const zRect& place, const zControlRow& row);

    void bind(zVariable variable) override { variable_.bind(variable); }
    void load() override;
    void store() override;
    void storeInto(zVariable variable) const override;

    bool checked() const;
    void check(bool on);  // does not call onClick

    std::function<void()> onClick;

  private:
    zBoundNumber variable_;
    bool shown_ = false;
};

class zRadioButton;

// Radio buttons of which at most one is chosen. Bound to a number: the id of the chosen button; 0: none.
class zRadioGroup {
  public:
    void bind(zVariable variable) { variable_.bind(variable); }
    void load();
    void store();
    void storeInto(zVariable variable) const;

    void choose(int id);  // does not call onClick

    std::function<void(int id)> onClick;  // a click on one of the buttons, also on the chosen one

  private:
    friend zRadioButton;

    void clicked(int id);

    std::vector<zRadioButton*> buttons_;
    zBoundNumber variable_;
    int shown_ = 0;
    int chosen_ = 0;
};

class zRadioButton : public zControl {
  public:
    zRadioButton(Widget board, const zRect& place, const zControlRow& row);

    // Called once, by the board.
    void join(std::shared_ptr<zRadioGroup> group);
    zRadioGroup& group() const { return *group_; }

    // These bind, load and store the whole group. load() and store() act on its first button only.
    void bind(zVariable variable) override { group_->bind(variable); }
    void load() override;
    void store() override;
    void storeInto(zVariable variable) const override { group_->storeInto(variable); }

  private:
    friend zRadioGroup;

    void set(bool on);

    std::shared_ptr<zRadioGroup> group_;
};
