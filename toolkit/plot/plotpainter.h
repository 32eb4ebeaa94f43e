// Draws the picture of a plot with a pen. Inside the toolkit only.
#pragma once

#include "toolkit/plot/plotpen.h"
#include "toolkit/plot/plotpicture.h"

#include <vector>

class zPlotPainter {
  public:
    // Everything but the cursor's line.
    void all(const zPlotPicture& picture, zPlotPen& pen);

    // Gets the columns from `from` to before `to` ready, as all() draws them. Those from `fresh` to the last
    // have just come: their ground is included, down to the labels of times.
    void prepare(const zPlotPicture& picture, zPlotColumns::Number from, zPlotColumns::Number to,
                 zPlotColumns::Number fresh);
    std::size_t bytes() const;  // of drawing them
    void draw(zPlotPen& pen);   // once

    // The same for the labels of times from this column on.
    void prepareTimes(const zPlotPicture& picture, zPlotColumns::Number from);
    std::size_t bytesOfTimes() const;
    void drawTimes(zPlotPen& pen);

    static XRectangle cursorLine(const zPlotPicture& picture);

  private:
    using Number = zPlotColumns::Number;
    struct Batch {
        zInk ink;
        int line;
        std::size_t end;  // of its areas, which begin where those of the batch before end
    };
    struct Label {
        int right, baseline;
        zPlotTime time;  // local
        bool seconds;
    };

    void clearCutLabels(const zPlotPicture& picture, zPlotColumns::Number fresh);
    void addTimeLines(const zPlotPicture& picture, Number from, Number to, Number fresh);
    void addBands(const zPlotPicture& picture, const zPlotPicture::Shown& shown, Number from, Number to);
    void addLine(const zPlotPicture& picture, const zPlotPicture::Shown& shown, Number from, Number to);
    void addLevel(const zPlotPicture& picture, int look, Number from, Number to, int top);
    void add(int x, int columns, int top, int bottom);
    void endBatch(zInk ink, int line);

    // Kept, so that a tick allocates nothing.
    std::vector<XRectangle> grounds_, areas_;
    std::vector<Batch> batches_;
    std::vector<Label> labels_;
};
