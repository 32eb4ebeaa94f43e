// Static controls: texts, separator lines and group boxes.
#pragma once

#include "toolkit/controls/control.h"

class zStatic : public zControl {
  public:
    zStatic(Widget board, const zRect& place, const zControlRow& row);

    void setText(const char* text);
    bool fits(const char* text) const;  // in the place of the row
};

class zFrame : public zControl {
  public:
    zFrame(Widget board, const zRect& place, const zControlRow& row);
};

// A frame with a title, stacked below the controls inside it.
class zGroupBox : public zControl {
  public:
    zGroupBox(Widget board, const zRect& place, const zControlRow& row);

    void setTitle(const char* text);
    void realized() override;

  private:
    Widget title_;
};
