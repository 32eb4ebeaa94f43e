// A plot window: up to eight values of an adapter over time, with keys and a menu for everything.
#pragma once

#include "toolkit/controls/contextmenu.h"
#include "toolkit/plot/plot.h"
#include "toolkit/window/window.h"
#include "ui/plot/plotline.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DPlotDlg : public zFormDialog {
  public:
    // `adapter`: as people call it ("adapter 1"). Shown by show().
    DPlotDlg(zApplication& application, std::string adapter);

    // False: there is no room for another one, or the value of that name is there already.
    bool canAdd(std::string_view name) const;
    bool add(const PlotLine& line);

    // To be called at regular times, when the series have been told what is new. `now` does not go back.
    void tick(metrics::Moment now);

    // Keeps what makes the ticks until the window goes.
    void keep(std::shared_ptr<void> ticking) { kept_.push_back(std::move(ticking)); }

    // Called when the user closes the window, which the handler destroys.
    std::function<void()> onClosed;

    const zPlot& plot() const { return plot_; }

  private:
    struct Command;
    static const Command commands[];

    void pressed(const zPlotKey& key);
    zMenuRows menu();
    void span(zPlotTime span);
    void scroll(int halves);
    void toOldest();
    void toNow();
    void hold();
    void moveCursor(int columns);
    void hideCursor();
    void select(int down);
    void fixScale(bool larger);
    void releaseScale();
    void remove();
    void showTitle();
    void save();
    void close();

    std::string adapter_;
    zPlot& plot_;
    std::vector<std::shared_ptr<void>> kept_;
    metrics::Moment looked_ = {};  // at the wall clock
};
