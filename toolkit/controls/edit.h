// Text fields of one line.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/controls/mask.h"

#include <optional>
#include <string>

class zEdit : public zControl {
  public:
    zEdit(Widget board, const zRect& place, const zControlRow& row);

    // Bound to a text. For an address picture the variable has no fixed characters (see mask.h).
    void bind(zVariable variable) override { variable_ = std::get<std::string*>(variable); }
    void load() override;

    // Fills missing digits of an address with zeros, also in the field. An empty address is not stored. Empty
    // runs of digits are stored as 0.
    void store() override;

    void grey(bool on) override {
        if (readOnly_) greySensitive(on);
    }

    // The text as shown. setText() replaces characters other than printable ASCII by '?', does not apply the
    // picture, and does nothing if the text is shown already.
    void setText(const std::string& text);
    std::string text() const;

  protected:
    // Shows a loaded value and remembers it: changed() compares with it.
    void show(const std::string& text);
    bool changed() const { return text() != shown_; }

  private:
    void verify(void* callData);
    void complete();

    bool readOnly_;
    std::optional<zPicture> picture_;
    std::string* variable_ = nullptr;
    std::string shown_;
    bool byProgram_ = false;
};

// An unsigned decimal number. Bound to a number, whose bits are shown as unsigned: a 16-bit -1 as 65535.
// store() writes the low bits that fit the variable. An empty field is not stored.
class zNumberEdit : public zEdit {
  public:
    zNumberEdit(Widget board, const zRect& place, const zControlRow& row) : zEdit(board, place, row) {}

    void bind(zVariable variable) override { variable_.bind(variable); }
    void load() override;
    void store() override;

    unsigned number() const;  // 0 for an empty field
    void setNumber(unsigned value);

  private:
    zBoundNumber variable_;
};
