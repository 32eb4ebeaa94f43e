// Drop-down lists. Up and Down end at the first and the last item. In the open list Return chooses the item
// and Escape goes back to the one before; neither presses a button of the window.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/controls/fieldlook.h"

#include <functional>
#include <optional>

class zDropDown : public zControl {
  public:
    ~zDropDown() override;

    // Dialog units: a line of text with the field's shadows. A row's height includes the open list.
    static constexpr int closedHeight = 14;

    // `place` is that of the closed list.
    zDropDown(Widget board, const zRect& place, const zControlRow& row);

    void enable(bool on) override;

    // Bound to a number: the position of the item, from 0. A position without an item shows an empty field.
    void bind(zVariable variable) override { variable_.bind(variable); }
    void load() override;
    void store() override;
    void storeInto(zVariable variable) const override;

    int selected() const;       // -1: none
    void select(int position);  // does not call onSelect

    // The user has chosen another item: closed the list on it, left the control, pressed Return or asked for
    // store(). Items that arrow keys pass on the way are not told.
    std::function<void()> onSelect;

  private:
    struct Handlers;

    Widget part(const char* name) const;
    void changed();
    void show(int position);

    int count_;
    std::optional<zFieldLook> look_;  // of the field with the chosen item
    zBoundNumber variable_;
    int shown_ = -1;
    int reported_ = 0;  // the position at the last call of onSelect or select()
    bool open_ = false;
    int openedOn_ = -1;  // the position when the list was opened
    bool cancelled_ = false;
};
