// Fields of one line.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/controls/mask.h"

#include <optional>
#include <string>

class zEdit : public zControl {
  public:
    zEdit(Widget board, const zRect& place, const zControlRow& row);

    // Of a masked field the variable holds the value without the picture's fixed characters.
    void bind(zVariable variable) override { variable_ = std::get<std::string*>(variable); }
    void load() override;

    // An address that lacks digits gets zeros for them, in the field, too; an empty one leaves the variable as it
    // is. Empty groups of numbers are stored as zeros.
    void store() override;

    // The text as shown. Characters other than printable ASCII are shown as '?'. Setting calls no handler, is
    // not held to the picture, and touches nothing when the text stands already.
    void setText(const std::string& text);
    std::string text() const;

  protected:
    // Shows what the variable holds; what store() compares with.
    void show(const std::string& text);
    bool changed() const { return text() != shown_; }

  private:
    void verify(void* callData);
    void complete();

    std::optional<zPicture> picture_;
    std::string* variable_ = nullptr;
    std::string shown_;
    bool byProgram_ = false;
};

// An unsigned decimal number. Bound to a number, which is shown without a sign: a 16-bit -1 as 65535. Stored are as
// many of the low bits as the variable has. An empty field is not stored.
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
