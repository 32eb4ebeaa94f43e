// Plots: courses of values over time, with scales, a cursor and a legend. A tick of the owner's clock scrolls
// the picture and draws what is new, without waiting for the server. While the scale stays it takes at most
// `tickBytes` of requests, and where the values of the legend have no room in that, they take turns; columns
// that have waited for several ticks are drawn in any case.
//
// Colours and font are those of tables ("Tarvolin*cells.background", gridColor, selectColor, tableFont);
// those of the series are lineColor1 to lineColor8.
#pragma once

#include "toolkit/controls/control.h"
#include "toolkit/display/alarm.h"
#include "toolkit/plot/plotpicture.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class zPlotPainter;
class zXPen;

// A key, by its name in keysymdef.h ("Left", "plus", "s").
struct zPlotKey {
    std::string_view name;
    bool shift = false, control = false;
};

class zPlot : public zControl {
  public:
    static constexpr std::size_t tickBytes = 400;

    zPlot(Widget board, const zRect& place, const zControlRow& row);
    ~zPlot() override;

    Widget outermost() const override;
    void place(const zRect& place) override;
    void realized() override;

    const zPlotPicture& picture() const { return picture_; }
    // Changes the picture in any way; it is drawn as a whole when the event loop runs again.
    void change(const std::function<void(zPlotPicture& picture)>& how);

    void tick(zPlotTime now);
    std::size_t bytesOfLastTick() const { return bytesOfLastTick_; }

    std::function<void(const zPlotKey& key)> onKey;

    const std::vector<std::string>& written() const { return written_; }  // in the legend, cell by cell

    void redraw();                 // as a whole, at once
    unsigned long pixmap() const;  // what the window shows, without cursor and focus

  protected:
    void point(int x, int y) override;  // the column gets the cursor, or the series of the legend is selected

  private:
    struct Handlers;

    void soon();
    void show(int left, int top, int right, int bottom);
    zPlotColumns::Number drawColumns(zPlotColumns::Number end, zPlotColumns::Number come);
    bool writeTimes();
    bool writeCells();
    void showRing();

    zRect place_;
    zPlotPicture picture_;
    std::unique_ptr<zPlotPainter> painter_;
    std::unique_ptr<zXPen> pen_;
    zAlarm painting_;
    bool realized_ = false, focused_ = false;
    zPlotColumns::Number pendingFrom_ = noColumn;  // changed, and not drawn yet
    zPlotColumns::Number timesFrom_ = 0;           // the first without the label of its time
    int ticksPending_ = 0;                         // in a row
    static constexpr zPlotColumns::Number noColumn = std::numeric_limits<zPlotColumns::Number>::max();
    std::vector<std::string> written_;  // in the cells of the legend
    std::size_t turn_ = 0;              // of the cell that is written next
    bool waits_ = false;                // one had no room in the last tick
    std::size_t bytesOfLastTick_ = 0;
};
