// The plot windows of the program.
#pragma once

#include "metrics/subject.h"
#include "toolkit/window/application.h"
#include "ui/plot/plotdlg.h"

#include <memory>
#include <optional>
#include <vector>

// Whether there is a value that can be plotted: a counter or another number.
bool canPlot(const std::optional<metrics::Subject>& subject);

class PlotWindows {
  public:
    // Made if there is none; it lives while anybody holds it, and no longer than the application. Only for
    // the user interface's thread.
    static std::shared_ptr<PlotWindows> of(zApplication& application);

    explicit PlotWindows(zApplication& application) : application_(application) {}

    // Watches a value and shows it in a window of its own.
    void plot(const metrics::Subject& subject);
    // The same in the window that the adapter's last plot came into.
    void add(const metrics::Subject& subject);
    // Whether that window is there, has room, and does not have the value yet.
    bool canAdd(const metrics::Subject& subject) const;

  private:
    struct Window {
        int adapter;
        std::unique_ptr<DPlotDlg> dialog;
    };
    DPlotDlg* last(int adapter) const;
    DPlotDlg& open(int adapter);

    zApplication& application_;
    std::vector<Window> windows_;
};
