// Draws the picture of a plot with a pen. Inside the toolkit only.
#pragma once

#include "toolkit/plot/plotpen.h"
#include "toolkit/plot/plotpicture.h"

#include <string>
#include <vector>

class zPlotPainter {
  public:
    // Everything but the cursor's line.
    void all(const zPlotPicture& picture, zPlotPen& pen);

    // The columns from this one to the last; of those from `fresh` on also what is below them. A picture that
    // has been scrolled becomes the one that all() would draw.
    void columns(const zPlotPicture& picture, zPlotPen& pen, zPlotColumns::Number from,
                 zPlotColumns::Number fresh);

    // The value at the cursor, of all series.
    void cursorTexts(const zPlotPicture& picture, zPlotPen& pen);

    static XRectangle cursorLine(const zPlotPicture& picture);

  private:
    void setGround(const zPlotPicture& picture, zPlotPen& pen);
    void lines(const zPlotPicture& picture, zPlotPen& pen, zPlotColumns::Number from);
    void times(const zPlotPicture& picture, zPlotPen& pen, zPlotColumns::Number from,
               zPlotColumns::Number fresh);
    void scales(const zPlotPicture& picture, zPlotPen& pen);
    void legend(const zPlotPicture& picture, zPlotPen& pen);

    std::vector<XRectangle> areas_;  // kept, so that a tick allocates nothing
};
