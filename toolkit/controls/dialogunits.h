// Dialog units: the unit of layout tables. It depends on the font of the window.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/widget.h"

// Converts dialog units to pixels. Base units of a font: the average width of A-Z and a-z, and the height.
class zDialogUnits {
  public:
    zDialogUnits(int baseWidth, int baseHeight) : baseWidth_(baseWidth), baseHeight_(baseHeight) {}

    // Of a font in which the alphabet has this extent in pixels.
    static constexpr const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    static zDialogUnits ofAlphabet(int width, int height) { return {(width / 26 + 1) / 2, height}; }

    // For the label font of a bulletin board.
    static zDialogUnits ofBoard(Widget board);

    int x(int units) const { return (units * baseWidth_ + 2) / 4; }
    int y(int units) const { return (units * baseHeight_ + 4) / 8; }
    // Converts edges, not sizes, so that controls adjacent in units are adjacent in pixels.
    zRect pixels(const zRect& units) const;
    // Pixels that suit the usual font, for this one; never less.
    int grown(int pixels) const;
    int baseWidth() const { return baseWidth_; }
    int baseHeight() const { return baseHeight_; }

  private:
    int baseWidth_, baseHeight_;
};
