// bench_plot [SECONDS]: a tick of a plot window beside what a bare Xlib program does to draw the same column:
// it scrolls a pixmap, draws ground and line, and copies. Then beside the same with the present values below,
// as many as a tick of the window has room for, of which the bare program knows glyphs and widths already. In
// turn, in processor time of this process; prints microseconds of both and the median of the ratios, for one
// series and for eight. With SECONDS: instead shows the window with one series for so long, a tick a second,
// and prints the processor time of a second, in milliseconds.
#include "bench/pairs.h"
#include "platform/index.h"
#include "resources/pictures.h"
#include "toolkit/plot/plotpen.h"
#include "ui/plot/plotdlg.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fmt/core.h>
#include <span>
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
        draw_ =
            XftDrawCreate(display, pixmap_, DefaultVisual(display, screen), DefaultColormap(display, screen));
        font_ = XftFontOpenName(display, screen, "Liberation Sans:size=10");
        for (unsigned i = 0; i < 10; ++i) digits_[i] = XftCharIndex(display, font_, '0' + i);
        XGlyphInfo extents{};
        XftGlyphExtents(display, font_, digits_, 10, &extents);  // and loads them
        digit_ = static_cast<short>(extents.xOff / 10);
        XMapWindow(display, window_);
        XSync(display, False);
    }
    // `values`: written below the column; none, or one of each series.
    void tick(int series, int columns, int y, std::span<const double> values) {
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
        if (!values.empty()) write(values, asIndex(series));
        XCopyArea(display_, pixmap_, window_, ground_, 0, 0, width, height, 0, 0);
        XFlush(display_);
    }

  private:
    // In turn, as long as there is room in a tick of the window.
    void write(std::span<const double> values, std::size_t series) {
        std::size_t bytes = 3 * zXBytes::fill + 2 * zXBytes::copy + zXBytes::area + zXBytes::writing +
                            series * (zXBytes::fill + 2 * zXBytes::area);
        XftGlyphFontSpec glyphs[64];
        XRectangle areas[8];
        int used = 0, count = 0;
        for (std::size_t i = 0; i < values.size(); ++i, ++turn_) {
            const std::size_t row = turn_ % values.size();
            char text[16];
            const int length = std::snprintf(text, sizeof text, "%.0f", values[row]);
            bytes += zXBytes::area + zXBytes::text(asIndex(length));
            if (bytes > zPlot::tickBytes) break;
            const auto top = static_cast<short>(100 + 20 * row);
            areas[count++] = {0, top, static_cast<unsigned short>(length * digit_), 18};
            for (int d = 0; d < length; ++d)
                glyphs[used++] = {font_, digits_[text[d] - '0'], static_cast<short>(d * digit_),
                                  static_cast<short>(top + 14)};
        }
        XFillRectangles(display_, pixmap_, ground_, areas, count);
        XftDrawGlyphFontSpec(draw_, &ink_, glyphs, used);
    }

    Display* display_;
    Window window_;
    Pixmap pixmap_;
    GC ground_ = nullptr, lines_[8] = {};  // each series has its colour
    XftDraw* draw_ = nullptr;
    XftFont* font_ = nullptr;
    XftColor ink_ = {0, {0, 0, 0, 0xffff}};
    FT_UInt digits_[10] = {};
    short digit_ = 0;  // width
    std::size_t turn_ = 0;
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
        Pairs column, values;
        std::vector<double> present(fed.size());
        for (int i = 0; i < 2000; ++i) {
            step();
            std::ranges::transform(fed, present.begin(), [](const auto& one) { return one->last; });
            const double begin = processor();
            draw();
            const double drawn = processor();
            bare.tick(series, 9, 50 + i % 7, {});
            const double drawnBare = processor();
            bare.tick(series, 9, 50 + i % 7, present);
            const double end = processor();
            application.handlePending();
            column.add(drawn - begin, drawnBare - drawn);
            values.add(drawn - begin, end - drawnBare);
        }
        column.print(fmt::format("{} column", series).c_str());
        values.print(fmt::format("{} values", series).c_str());
    }
}
