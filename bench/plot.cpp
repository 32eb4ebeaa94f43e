// bench_plot [SECONDS]: a tick of a plot window with one series beside what a bare Xlib program does to draw
// the same column: it scrolls a pixmap, draws ground and line, and copies. In turn, in processor time of this
// process; prints microseconds of both and the median of the ratios, for one series and for eight. With
// SECONDS: instead shows the window with one series for so long, a tick a second, and prints the processor
// time of a second, in milliseconds.
#include "bench/pairs.h"
#include "resources/pictures.h"
#include "ui/plot/plotdlg.h"

#include <Xm/Xm.h>
#include <cstdlib>
#include <ctime>
#include <fmt/core.h>
#include <thread>
#include <utility>
#include <vector>

using namespace std::chrono;

namespace {

double processor() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

// A program that knows the column already.
class Bare {
  public:
    static constexpr unsigned width = 500, height = 300;

    explicit Bare(Display* display) : display_(display) {
        const int screen = DefaultScreen(display);
        window_ = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, width, height, 0, 0,
                                      WhitePixel(display, screen));
        pixmap_ = XCreatePixmap(display, window_, width, height,
                                static_cast<unsigned>(DefaultDepth(display, screen)));
        XGCValues values{};
        values.graphics_exposures = False;
        const auto gc = [&](unsigned long colour) {
            values.foreground = colour;
            return XCreateGC(display, window_, GCForeground | GCGraphicsExposures, &values);
        };
        ground_ = gc(WhitePixel(display, screen));
        for (GC& line : lines_) line = gc(0x0055a8);
        XFillRectangle(display, pixmap_, ground_, 0, 0, width, height);
        XMapWindow(display, window_);
        XSync(display, False);
    }
    void tick(int series, int columns, int y) {
        const int x = static_cast<int>(width) - columns;
        const auto shift = static_cast<unsigned>(columns);
        XCopyArea(display_, pixmap_, pixmap_, ground_, columns, 0, width - shift, height, 0, 0);
        XFillRectangle(display_, pixmap_, ground_, x, 0, shift, height);
        for (int i = 0; i < series; ++i) {
            XRectangle areas[] = {{static_cast<short>(x), static_cast<short>(y + 20 * i), 1, 6},
                                  {static_cast<short>(x + 1), static_cast<short>(y + 20 * i),
                                   static_cast<unsigned short>(columns - 1), 2}};
            XFillRectangles(display_, pixmap_, lines_[i], areas, 2);
        }
        XCopyArea(display_, pixmap_, window_, ground_, 0, 0, width, height, 0, 0);
        XFlush(display_);
    }

  private:
    Display* display_;
    Window window_;
    Pixmap pixmap_;
    GC ground_ = nullptr, lines_[8] = {};  // each series has its colour
};

struct Fed {
    std::shared_ptr<metrics::Series> series = std::make_shared<metrics::Series>();
    double last = 0;
};

}  // namespace

int main(int argc, char** argv) {
    zApplication application("bench_plot", "Tarvolin", {}, fallbackResources);
    if (!application.openDisplay()) return 1;
    DPlotDlg window(application, "adapter 1");
    std::vector<std::unique_ptr<Fed>> fed;
    const auto add = [&] {
        Fed* one = fed.emplace_back(std::make_unique<Fed>()).get();
        window.add({fmt::format("value {}", fed.size()), "cells/s",
                    std::shared_ptr<const metrics::Series>(one->series),
                    [one] { return metrics::Rate(one->last); }});
    };
    metrics::Moment now = steady_clock::now();
    unsigned random = 1;
    const auto step = [&] {
        const auto since = std::exchange(now, now + 1s);
        for (const auto& one : fed) {
            random = random * 1103515245 + 12345;
            one->last = 20000 + (random >> 16) % 5000;
            one->series->add(since, now, static_cast<float>(one->last));
        }
    };
    const auto draw = [&] {
        window.tick(now);
        XFlush(static_cast<Display*>(application.display()));
    };
    add();
    window.show();
    for (int i = 0; i < 100; ++i) {
        step();
        draw();
        application.handlePending();
    }
    if (argc > 1) {
        const int seconds = std::atoi(argv[1]);
        const double begin = processor();
        for (int i = 0; i < seconds; ++i) {
            std::this_thread::sleep_for(1s);
            step();
            draw();
            application.handlePending();
        }
        fmt::print("{:.3f}\n", (processor() - begin) / 1000 / seconds);
        return 0;
    }
    Bare bare(static_cast<Display*>(application.display()));
    for (const int series : {1, 8}) {
        while (static_cast<int>(fed.size()) < series) add();
        application.handlePending();
        std::vector<double> figures, floors, ratios;
        for (int i = 0; i < 2000; ++i) {
            step();
            const double begin = processor();
            draw();
            const double between = processor();
            bare.tick(series, 9, 50 + i % 7);
            const double end = processor();
            application.handlePending();
            figures.push_back(between - begin);
            floors.push_back(end - between);
            ratios.push_back(figures.back() / floors.back());
        }
        fmt::print("{} {:.1f} {:.1f} {:.2f}\n", series, median(figures), median(floors), median(ratios));
    }
}
