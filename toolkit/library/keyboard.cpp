#include "toolkit/library/keyboard.h"

#include "toolkit/library/next.h"

#include <cstdlib>
#include <cstring>

namespace {

const zKeyboardTable* table = nullptr;

KeySym* ask(Display* display, int first, int count, int* perKey) {
    static auto* const library = zNext<decltype(XGetKeyboardMapping)>("XGetKeyboardMapping");
    return library(display, static_cast<KeyCode>(first), count, perKey);
}

}  // namespace

// Replaces the function of libX11.
extern "C" KeySym* XGetKeyboardMapping(Display* display, KeyCode first, int count, int* perKey) {
    return table ? table->copy(first, count, perKey) : ask(display, first, count, perKey);
}

zKeyboardTable::zKeyboardTable(Display* display) {
    int last = 0;
    XDisplayKeycodes(display, &first_, &last);
    all_ = ask(display, first_, last - first_ + 1, &perKey_);
    if (all_) table = this;
}

zKeyboardTable::~zKeyboardTable() {
    table = nullptr;
    XFree(all_);
}

KeySym* zKeyboardTable::copy(int first, int count, int* perKey) const {
    *perKey = perKey_;
    const auto symbols = static_cast<std::size_t>(count) * static_cast<std::size_t>(perKey_);
    auto* part = static_cast<KeySym*>(std::malloc(symbols * sizeof(KeySym)));
    if (part) std::memcpy(part, all_ + std::ptrdiff_t{first - first_} * perKey_, symbols * sizeof(KeySym));
    return part;
}
