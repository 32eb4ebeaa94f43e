// bench_plot: a tick of a plot window beside what a bare Xlib program does to draw the same column: it
// scrolls a pixmap, draws ground and line, and copies. Then beside one that also writes as many present
// values as a tick of the window has room for, with glyphs and widths that it knows already. In turn, in
// processor time of this process; prints microseconds of both and the median of the ratios, for one series
// and for eight.
//
// bench_plot seconds N: shows the window with one series for so long, a tick a second.
// bench_plot hours N: a window with eight series, four ticks a second, and another span from time to time, as
// fast as it goes; prints what the process and the X server hold for it after each hour.
#include "bench/pairs.h"
#include "platform/index.h"
#include "resources/pictures.h"
#include "toolkit/plot/plotpen.h"
#include "ui/plot/plotdlg.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
// Needs the types of Xlib:
#include <X11/extensions/XRes.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fmt/core.h>
#include <fstream>
#include <malloc.h>
#include <span>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

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

// A plot window whose series get values by the second, or whatever the step is.
class Shown {
  public:
    explicit Shown(zApplication& application) : application_(application) { window_.show(); }

    void addUntil(std::size_t series) {
        while (fed_.size() < series) {
            Fed* one = fed_.emplace_back(std::make_unique<Fed>()).get();
            window_.add({fmt::format("value {}", fed_.size()), "cells/s",
                         std::shared_ptr<const metrics::Series>(one->series),
                         [one] { return metrics::Rate(one->last); }});
        }
        application_.handlePending();
    }
    void step(std::chrono::milliseconds later) {
        const auto since = std::exchange(now_, now_ + later);
        for (const auto& one : fed_) {
            random_ = random_ * 1103515245 + 12345;
            one->last = 20000 + (random_ >> 16) % 5000;
            one->series->add(since, now_, static_cast<float>(one->last));
        }
    }
    void draw() {
        window_.tick(now_);
        XFlush(display());
    }
    void ticks(int count, std::chrono::milliseconds later) {
        for (int i = 0; i < count; ++i) {
            step(later);
            draw();
            application_.handlePending();
        }
    }
    std::vector<double> present() const {
        std::vector<double> values(fed_.size());
        std::ranges::transform(fed_, values.begin(), [](const auto& one) { return one->last; });
        return values;
    }
    void press(const char* key) { window_.plot().onKey({key}); }
    Window id() const { return XtWindow(window_.shell()); }
    Display* display() const { return static_cast<Display*>(application_.display()); }

  private:
    struct Fed {
        std::shared_ptr<metrics::Series> series = std::make_shared<metrics::Series>();
        double last = 0;
    };

    zApplication& application_;
    DPlotDlg window_{application_, "adapter 1"};
    std::vector<std::unique_ptr<Fed>> fed_;
    metrics::Moment now_ = std::chrono::steady_clock::now();
    unsigned random_ = 1;
};

void compare(zApplication& application, Shown& shown) {
    Bare bare(shown.display());
    for (const int series : {1, 8}) {
        shown.addUntil(asIndex(series));
        Pairs column, values;
        for (int i = 0; i < 2000; ++i) {
            shown.step(1s);
            const std::vector<double> present = shown.present();
            const double begin = processor();
            shown.draw();
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

void printHeld(const Shown& shown, int hour) {
    const auto heap = mallinfo2();
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    unsigned long pixmaps = 0;
    XResQueryClientPixmapBytes(shown.display(), shown.id(), &pixmaps);
    XResType* types = nullptr;
    int number = 0;
    unsigned resources = 0;
    if (XResQueryClientResources(shown.display(), shown.id(), &number, &types))
        for (int i = 0; i < number; ++i) resources += types[i].count;
    XFree(types);
    fmt::print("{} h: {:.1f} KB allocated, {} KB resident, {} X resources, {} KB of pixmaps\n", hour,
               static_cast<double>(heap.uordblks + heap.hblkhd) / 1024,
               resident * sysconf(_SC_PAGESIZE) / 1024, resources, pixmaps / 1024);
}

void passHours(Shown& shown, int hours) {
    constexpr const char* spans[] = {"1", "2", "3", "4"};
    constexpr int parts = 16;  // of an hour, each with another span
    shown.addUntil(8);
    for (int part = 0; part < hours * parts; ++part) {
        shown.press(spans[part % 4]);
        shown.ticks(3600 * 4 / parts, 250ms);
        if ((part + 1) % parts == 0) printHeld(shown, (part + 1) / parts);
    }
}

}  // namespace

int main(int argc, char** argv) {
    zApplication application("bench_plot", "Tarvolin", {}, fallbackResources);
    if (!application.openDisplay()) return 1;
    Shown shown(application);
    shown.addUntil(1);
    shown.ticks(100, 1s);
    if (argc < 3) {
        compare(application, shown);
        return 0;
    }
    const int count = std::atoi(argv[2]);  // NOLINT(cert-err34-c)
    if (argv[1] == std::string_view("hours")) {
        passHours(shown, count);
        return 0;
    }
    for (int i = 0; i < count; ++i) {
        std::this_thread::sleep_for(1s);
        shown.ticks(1, 1s);
    }
}
