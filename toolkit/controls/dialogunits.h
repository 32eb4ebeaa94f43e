// Dialog units: the unit of layout tables, which follows from the font of the window.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/widget.h"

// Dialog base units of a font, in pixels: the average width of A-Z a-z and the height.
class zDialogUnits {
  public:
    zDialogUnits(int baseWidth, int baseHeight) : baseWidth_(baseWidth), baseHeight_(baseHeight) {}

    // Those of the label font of a bulletin board.
    static zDialogUnits ofBoard(Widget board);

    int x(int units) const { return (units * baseWidth_ + 2) / 4; }
    int y(int units) const { return (units * baseHeight_ + 4) / 8; }
    // Edges are converted, not sizes: controls that touch in units touch in pixels.
    zRect pixels(const zRect& units) const;
    int baseWidth() const { return baseWidth_; }
    int baseHeight() const { return baseHeight_; }

  private:
    int baseWidth_, baseHeight_;
};
