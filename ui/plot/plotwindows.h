// The plot windows of the program.
#pragma once

#include "metrics/subject.h"
#include "toolkit/window/application.h"
#include "ui/plot/plotdlg.h"

#include <memory>
#include <vector>

class PlotWindows {
  public:
    explicit PlotWindows(zApplication& application) : application_(application) {}

    // Watches a value and shows it in a window of its own.
    void plot(const metrics::Subject& subject);
    // The same in the window that the adapter's last plot came into.
    void add(const metrics::Subject& subject);
    bool canAdd(int adapter) const;  // it is there, and has room

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
