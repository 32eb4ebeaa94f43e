// The keyboard's table, read once. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>

// While one lives, the library's questions for keys are answered from one table. Motif asks for each key of
// its own that it looks for.
class zKeyboardTable {
  public:
    explicit zKeyboardTable(Display* display);
    ~zKeyboardTable();
    zKeyboardTable(const zKeyboardTable&) = delete;
    zKeyboardTable& operator=(const zKeyboardTable&) = delete;

    // As XGetKeyboardMapping: to be freed with XFree.
    KeySym* copy(int first, int count, int* perKey) const;

  private:
    int first_ = 0, perKey_ = 0;
    KeySym* all_;
};
