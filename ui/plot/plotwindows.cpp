#include "ui/plot/plotwindows.h"

#include "ui/adapterwatch.h"

#include <fmt/format.h>

bool canPlot(const std::optional<metrics::Subject>& subject) {
    return subject && (subject->isRate() || subject->metric->kind == metrics::Kind::number);
}

std::shared_ptr<PlotWindows> PlotWindows::of(zApplication& application) {
    static std::weak_ptr<PlotWindows> only;
    auto windows = only.lock();
    if (!windows) only = windows = std::make_shared<PlotWindows>(application);
    return windows;
}

void PlotWindows::plot(const metrics::Subject& subject) {
    const int adapter = subject.place.adapter;
    DPlotDlg& window = open(adapter);
    window.add(plotLineOf(AdapterWatch::of(application_, adapter)->sampler().watch(subject)));
    window.show();
    window.tick(std::chrono::steady_clock::now());
}

void PlotWindows::add(const metrics::Subject& subject) {
    const int adapter = subject.place.adapter;
    if (DPlotDlg* window = last(adapter))
        window->add(plotLineOf(AdapterWatch::of(application_, adapter)->sampler().watch(subject)));
}

bool PlotWindows::canAdd(const metrics::Subject& subject) const {
    const DPlotDlg* window = last(subject.place.adapter);
    return window && window->canAdd(plotNameOf(subject));
}

DPlotDlg* PlotWindows::last(int adapter) const {
    DPlotDlg* found = nullptr;
    for (const Window& window : windows_)
        if (window.adapter == adapter) found = window.dialog.get();
    return found;
}

DPlotDlg& PlotWindows::open(int adapter) {
    auto made = std::make_unique<DPlotDlg>(application_, fmt::format("adapter {}", adapter + 1));
    DPlotDlg* dialog = made.get();
    dialog->onClosed = [this, dialog] {
        std::erase_if(windows_, [dialog](const Window& window) { return window.dialog.get() == dialog; });
    };
    const auto watch = AdapterWatch::of(application_, adapter);
    dialog->keep(watch);
    dialog->keep(watch->listen([dialog] { dialog->tick(std::chrono::steady_clock::now()); }));
    windows_.push_back({adapter, std::move(made)});
    return *dialog;
}
