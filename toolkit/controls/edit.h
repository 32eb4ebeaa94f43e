// Text fields of one line.
//
// A field that is entered with Tab or by the program, but not by a click, has its text marked: what is typed
// or pasted replaces it. Ctrl+A marks all; Ctrl+C, Ctrl+X, Ctrl+V and Shift+Insert are those of the
// clipboard; the middle button inserts the selection PRIMARY, which marking leaves to its owner. What the
// field's mask does not take is refused whole, with a beep and a reason.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/controls/fieldlook.h"
#include "toolkit/controls/fieldmark.h"
#include "toolkit/controls/mask.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

class zEdit : public zControl {
  public:
    zEdit(Widget board, const zRect& place, const zControlRow& row);
    ~zEdit() override;

    // Bound to a text. For an address picture the variable has no fixed characters (see mask.h).
    void bind(zVariable variable) override { variable_ = std::get<std::string*>(variable); }
    void load() override;

    // Fills missing digits of an address with zeros, also in the field. An empty address is not stored. Empty
    // runs of digits are stored as 0.
    void store() override;
    void storeInto(zVariable variable) const override;

    void enable(bool on) override;
    void grey(bool on) override {
        if (readOnly_) greySensitive(on);
    }

    // The text as shown. setText() replaces characters other than printable ASCII by '?', does not apply the
    // picture, and does nothing if the text is shown already.
    void setText(const std::string& text);
    std::string text() const;

    std::function<void(const std::string& reason)> onRefused;  // a sentence about a key or a pasted text
    std::function<void()> onEdited;                            // the user has changed the text

    // The other half of an address that was pasted whole, as the field that holds it shows it.
    std::function<void(const std::string& text)> onPartner;

  protected:
    // Shows a loaded value and remembers it: changed() compares with it.
    void show(const std::string& text);
    bool changed() const { return text() != shown_; }

  private:
    struct Handlers;
    struct Key;
    struct Range {
        std::size_t start, end;
    };

    // The time is that of the event.
    void markAll(unsigned long time);
    void copy(unsigned long time);
    void cut(unsigned long time);
    void paste(unsigned long time);

    Range marked() const;  // or what is selected, or else the caret's place
    void replace(const Range& range, std::string_view typed);
    void verify(void* callData);
    std::optional<zPicture::Edit> edited(const Range& range, std::string_view typed, std::size_t caret);
    void apply(const zPicture::Edit& edit);
    void edited();
    void refuse(const std::string& reason);

    void entered();
    void leaving();
    bool complete();

    bool readOnly_;
    const zFieldMask* mask_;
    std::optional<zPicture> picture_;  // none: the field is read-only
    std::optional<zFieldLook> look_;
    std::string* variable_ = nullptr;
    std::string shown_;
    bool byProgram_ = false;
    bool padded_ = false;  // what is typed, see mask.h
    std::optional<zFieldMark> mark_;
    bool clicked_ = false;         // since the field was last left
    bool windowGone_ = false;      // the window has lost the keyboard, and the field with it
    std::shared_ptr<zEdit> self_;  // for a pasted text, which may arrive when this object is gone
};

// An unsigned decimal number. Bound to a number, whose bits are shown as unsigned: a 16-bit -1 as 65535.
// store() writes the low bits that fit the variable. An empty field is not stored.
class zNumberEdit : public zEdit {
  public:
    zNumberEdit(Widget board, const zRect& place, const zControlRow& row) : zEdit(board, place, row) {}

    void bind(zVariable variable) override { variable_.bind(variable); }
    void load() override;
    void store() override;
    void storeInto(zVariable variable) const override;

    unsigned number() const;  // 0 for an empty field
    void setNumber(unsigned value);

  private:
    zBoundNumber variable_;
};
