#include "ui/myedit.h"

void myEdit::write(std::string_view text) {
    if (text == written_ && !fresh_) return;
    fresh_ = false;
    written_ = text;
    field_.setText(written_);
}
