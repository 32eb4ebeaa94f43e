// Long texts to read: in a font of fixed width, with a scroll bar. Arrow keys, Page Up and Page Down scroll,
// Home and End go to the beginning and the end, Ctrl+C copies what is marked. Return and Escape press the
// buttons of the window.
#pragma once

#include "toolkit/controls/control.h"

#include <string>

class zTextView : public zControl {
  public:
    zTextView(Widget board, const zRect& place, const zControlRow& row);

    Widget outermost() const override;
    void realized() override;

    void setText(const std::string& text);

  private:
    zRect place_;
};
