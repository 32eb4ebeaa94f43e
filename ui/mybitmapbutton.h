// Lamps that show the state of a service or an alarm.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/lamp.h"

#include <cstdint>

enum class LampLook { greyed, unlit, lit };

// The look for a service. No answer counts as absent.
inline LampLook serviceLook(bool present, bool up) {
    return !present ? LampLook::greyed : up ? LampLook::lit : LampLook::unlit;
}

// What a lamp's tooltip says: "Joining, state 3", "unknown state 9" of a code without words, or the words
// alone.
struct LampWords {
    const char* words = "No answer yet";  // a constant
    std::int64_t code = noCode;

    static constexpr std::int64_t noCode = -1;
    bool operator==(const LampWords&) const = default;
};

class myBitmapButton {
  public:
    // Wraps a lamp of a layout's board, which must outlive this object. The lamp is greyed at first.
    myBitmapButton(zBoard& board, const char* lamp) : board_(board), lamp_(board.control<zLamp>(lamp)) {
        paint(LampLook::greyed);
        say({});
    }

    // Showing the same again costs nothing.
    void show(LampLook look, const LampWords& words) {
        if (look != look_) paint(look);
        if (words != words_) say(words);
    }

  private:
    void paint(LampLook look);
    void say(const LampWords& words);

    zBoard& board_;
    zLamp& lamp_;
    LampLook look_ = LampLook::greyed;
    LampWords words_;
};
