// Check boxes and radio buttons.
#pragma once

#include "toolkit/controls/control.h"

#include <functional>
#include <memory>
#include <vector>

// Bound to 0 and 1; a variable that is neither shows as checked, and stays as it is until the user clicks.
class zCheckBox : public zControl {
  public:
    zCheckBox(Widget board, const zRect& place, const zControlRow& row);

    void bind(zVariable variable) override { variable_ = std::get<int*>(variable); }
    void load() override;
    void store() override;

    bool checked() const;
    void check(bool on);  // calls no handler

    std::function<void()> onClick;

  private:
    int* variable_ = nullptr;
    bool shown_ = false;
};

class zRadioButton;

// Radio buttons of which at most one is chosen. Bound to the id of the chosen button; 0: none.
class zRadioGroup {
  public:
    void bind(int& variable) { variable_ = &variable; }
    void load();
    void store();

    void choose(int id);  // calls no handler

    std::function<void(int id)> onChoose;  // the user has chosen another button than before

  private:
    friend zRadioButton;

    void clicked(int id);

    std::vector<zRadioButton*> buttons_;
    int* variable_ = nullptr;
    int shown_ = 0;
    int chosen_ = 0;
};

class zRadioButton : public zControl {
  public:
    zRadioButton(Widget board, const zRect& place, const zControlRow& row);

    // The first button of a group makes the group, the others join it.
    void join(std::shared_ptr<zRadioGroup> group);
    zRadioGroup& group() const { return *group_; }

    // Of the whole group, done once by its first button.
    void bind(zVariable variable) override { group_->bind(*std::get<int*>(variable)); }
    void load() override;
    void store() override;

  private:
    friend zRadioGroup;

    void set(bool on);

    std::shared_ptr<zRadioGroup> group_;
};
