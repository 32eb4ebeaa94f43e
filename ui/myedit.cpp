#include "ui/myedit.h"

void myEdit::write(std::string_view text) {
    if (text == written_) return;
    written_ = text;
    field_.setText(*written_);
}
