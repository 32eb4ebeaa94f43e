// What is marked in a text field without being a selection: the selection PRIMARY stays with its owner.
// Typing and pasting replace it, which is the field's business. Inside the toolkit only.
#pragma once

#include <cstddef>

#include <X11/Intrinsic.h>

class zFieldMark {
  public:
    explicit zFieldMark(Widget field) : field_(field) {}
    ~zFieldMark();
    zFieldMark(const zFieldMark&) = delete;
    zFieldMark& operator=(const zFieldMark&) = delete;

    // Marks the characters from `from` up to, but not including, `to` in place of what was marked before.
    void set(std::size_t from, std::size_t to);

    // Marks them in a field that is being left, until the next key is pressed, wherever that is.
    void leave(std::size_t from, std::size_t to);

    void clear();

    explicit operator bool() const { return to_ > from_; }
    std::size_t from() const { return from_; }
    std::size_t to() const { return to_; }

  private:
    static void hearKeys(Display* display);

    Widget field_;
    std::size_t from_ = 0, to_ = 0;
};
