// The picture of a plot, without the window that shows it: its series, the time that is seen, scales, a
// cursor, and where everything stands.
#pragma once

#include "toolkit/plot/plotcolumns.h"
#include "toolkit/plot/plotlook.h"
#include "toolkit/plot/plotscale.h"
#include "toolkit/plot/plotseries.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

class zPlotPen;

class zPlotPicture {
  public:
    using Number = zPlotColumns::Number;
    static constexpr int divisions = 5;  // of each scale, so that all have the same lines

    struct Shown {
        zPlotSeries series;
        int look;  // its line
        std::size_t scale;
        zPlotColumns columns;
    };
    struct Scale {
        std::string unit;
        zPlotScale range;
    };

    // Series come and go; there is room for zPlotLook::lines. A line keeps its look.
    void add(zPlotSeries series);
    void remove(std::size_t index);
    void select(std::size_t index);
    std::size_t selected() const { return selected_; }
    const std::vector<Shown>& shown() const { return shown_; }
    const std::vector<Scale>& scales() const { return scales_; }
    // The scales beside the plot: of the first unit on the left, of the second one on the right. With more
    // units that of the selected series is on the right, unless it is on the left.
    std::optional<std::size_t> rightScale() const;

    // The view. Moments of the clock that tick() goes by.
    void setSpan(zPlotTime span);
    zPlotTime span() const { return span_; }
    void hold();                // the time that is seen
    void showNow();             // the newest, and go on
    void scroll(zPlotTime by);  // forward or, negative, back; up to now shows the newest again
    void showBeginning();       // of what is known
    bool isHeld() const { return until_.has_value(); }
    zPlotTime from() const { return columns().first() * columns().each(); }
    zPlotTime until() const { return (columns().last() + 1) * columns().each(); }
    zPlotTime now() const { return now_; }
    void setLocalOffset(zPlotTime offset) { localOffset_ = offset; }  // local time is the clock's plus this
    zPlotTime local(zPlotTime time) const { return time + localOffset_; }

    void fixScale(bool larger);  // of the selected series
    void releaseScale();

    // The cursor is on a column, and stays at its time.
    std::optional<Number> cursor() const;
    void setCursor(std::optional<Number> column);  // the nearest that is seen
    int cursorX() const;

    // Gives everything its place in so many pixels.
    void lay(int width, int height, const zPlotPen& pen);

    // Columns come, and the newest change.
    struct Change {
        bool all = false;  // the whole picture is another one
        Number lastBefore = 0;
        Number from = 0;  // the first to be drawn anew; behind the last: none
    };
    Change tick(zPlotTime now);

    // The legend keeps the present values that it has: for a copy that stands while its series go on.
    void keepPresentValues();

    // Places, in pixels.
    struct Places {
        int width = 0, height = 0;
        int left = 0, top = 0, right = 0, bottom = 0;  // of the plot, right and bottom behind it
        int timeBottom = 0;                            // of the labels below it
        int row = 0;                                   // height of a line of text
        int ascent = 0;
        int presentRight = 0, cursorRight = 0;  // where the columns of the legend end
        int nameLeft = 0;
        int timeLabel = 0;  // width
    };
    const Places& places() const { return places_; }
    int legendTop(std::size_t index) const;  // of a row
    std::optional<std::size_t> legendAt(int y) const;
    Number columnAt(int x) const { return columns().first() + x - places_.left; }
    int xOf(Number column) const { return places_.left + static_cast<int>(column - columns().first()); }
    int yOf(double value, const zPlotScale& scale) const;
    const zPlotScale& scaleOf(const Shown& shown) const { return scales_[shown.scale].range; }

    // The texts of the legend that change with time: of each series the present value, then of each the
    // value at the cursor, then the cursor's time. They end at `right`.
    std::size_t cells() const { return 2 * shown_.size() + 1; }
    std::string cellText(std::size_t cell) const;
    struct CellPlace {
        int right, top;
    };
    CellPlace cellPlace(std::size_t cell) const;

  private:
    const zPlotColumns& columns() const { return shown_.empty() ? empty_ : shown_.front().columns; }
    void collectAll();
    void assignScales();
    double largest(std::size_t scale) const;
    bool followScales();
    void fitScales();

    std::vector<Shown> shown_;
    std::vector<Scale> scales_;
    std::size_t selected_ = 0;
    zPlotColumns empty_;  // the columns while there are no series
    zPlotTime span_ = std::chrono::minutes(1), now_{0}, collected_{0}, localOffset_{0};
    std::optional<zPlotTime> until_;  // the end of what is seen, while held
    std::optional<zPlotTime> cursor_;
    Places places_;
};
