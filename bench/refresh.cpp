// bench_refresh [LES_ROWS | instructions | soak TICKS COMMAND]: a tick of each statistics page on top beside
// the bare driver exchanges of the same tick, pair by pair, in processor time of this process. Needs a
// display and, in TARVOLIN_ROOT, a simulator whose clock runs or is frozen. Prints per page microseconds and
// the median of the ratios.
//
// With a number: only the page of the servers, which shows as many rows; also prints the bytes of resident
// memory per row beyond the reply's, then a tick of the page sorted by some of its columns beside one of the
// page as it comes (each with totals, after Clear, with rates and with smoothed rates), a search for a text
// that no cell has, and a step of the active cell to a far row beside the same in the table of the second
// adapter.
//
// With "instructions", under callgrind with --instr-atstart=no: leaves two profiles a page, named "PAGE tick"
// and "PAGE exchanges", of a hundred each, with a turn of the event loop each.
//
// With "soak": that many ticks of every page, with the shell command (which moves the simulator's clock)
// before each thousandth; prints what the process holds after a tenth of them and at the end.
#include "bench/recorder.h"
#include "driver/channel.h"
#include "driver/dai_api.h"
#include "model/settings.h"
#include "resources/pictures.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/table/table.h"
#include "toolkit/window/window.h"
#include "ui/stats/aal5page.h"
#include "ui/stats/ip1577page.h"
#include "ui/stats/lecsstatspage.h"
#include "ui/stats/lecstatspage.h"
#include "ui/stats/lesstatspage.h"
#include "ui/stats/signallingpage.h"

#include <Xm/Xm.h>
// after it:
#include <X11/extensions/XRes.h>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fmt/core.h>
#include <fstream>
#include <malloc.h>
#include <thread>
#include <unistd.h>
#include <valgrind/callgrind.h>
#include <vector>

namespace {
double processor() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

long residentBytes() {
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

void rest() {
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
}

constexpr zControlRow rows[] = {{.kind = zKind::notebook, .place = {4, 4, 292, 239}, .name = "pages"}};
constexpr zLayout frame{.id = 1,
                        .name = "refresh",
                        .caption = "Refresh",
                        .width = 300,
                        .height = 275,
                        .font = {zFontRow::normal},
                        .rows = rows};

using Make = std::unique_ptr<StatsPage> (*)(const StatsSource& source);
template <class Page> std::unique_ptr<StatsPage> make(const StatsSource& source) {
    return std::make_unique<Page>(source);
}
constexpr struct {
    const char* name;
    Make make;
} pages[] = {{"Signalling", make<DStatsDlgSignallingPG>},
             {"AAL5", make<DStatsDlgAAL5PG>},
             {"LEC", make<DStatsDlgLECPG>},
             {"LES", make<DStatsDlgLESPG>},
             {"LECS", make<DStatsDlgLECSPG>},
             {"1577", make<DStatsDlgIP1577PG>}};

// Microseconds of a step that shows other rows, the mean of a hundred far apart.
double step(zApplication& application, zTable& table) {
    constexpr int steps = 100, stride = 7919;  // a prime: no row comes twice
    const double begin = processor();
    for (int i = 1; i <= steps; ++i) {
        table.setActiveCell({1, i * stride % std::max(table.model().rows(), 1) + 1});
        application.handlePending();
    }
    return (processor() - begin) / steps;
}

zTable& tableOf(const zFormDialog& dialog) {
    XtPointer table = nullptr;
    XtVaGetValues(XtNameToWidget(dialog.shell(), "*clientTable*cells"), XmNuserData, &table, nullptr);
    return *static_cast<zTable*>(table);
}

// A dialog with one page, shown.
struct Shown {
    zFormDialog dialog;
    double linkLimit = metrics::linkLimit(SuniStatsView());
    StatsSource source;
    std::unique_ptr<StatsPage> page;

    Shown(zApplication& application, DriverChannel& channel, std::uint8_t adapter, Make make)
        : dialog(application, frame), source{application, dialog.board().control<zNotebook>("pages"), channel,
                                             adapter, linkLimit},
          page(make(source)) {
        dialog.show();
        application.handlePending();
        page->Update();
        application.handlePending();
    }
};

void scroll(zApplication& application, DriverChannel& channel, zTable& table) {
    const Shown other(application, channel, 1, make<DStatsDlgLESPG>);
    zTable& small = tableOf(other.dialog);
    std::vector<double> figures, floors, ratios;
    for (int pair = 0; pair < 10; ++pair) {
        figures.push_back(step(application, table));
        floors.push_back(step(application, small));
        ratios.push_back(figures.back() / floors.back());
    }
    fmt::print("scroll {:.1f} {:.1f} {:.2f} {}\n", median(figures), median(floors), median(ratios),
               small.model().rows());
}

double tick(zApplication& application, StatsPage& page) {
    rest();
    const double begin = processor();
    page.Update();
    application.handlePending();
    return processor() - begin;
}

void sorted(zApplication& application, DriverChannel& channel, StatsPage& page) {
    const Shown other(application, channel, 0, make<DStatsDlgLESPG>);
    zTable& table = tableOf(other.dialog);
    constexpr int columns[] = {1, 4, 2, 10};  // addresses, a counter, states, halves of ATM addresses
    constexpr struct {
        const char* name;
        void (*turn)(StatsPage& page);
    } views[] = {{"", [](StatsPage&) {}},
                 {"-cleared", [](StatsPage& p) { p.ClearStats(); }},
                 {"-rates", [](StatsPage& p) { p.showRates(true); }},
                 {"-smoothed", [](StatsPage& p) { p.smoothRates(true); }}};
    for (const auto& view : views) {
        view.turn(page);
        view.turn(*other.page);
        for (const int column : columns) {
            table.sortBy({column, true});
            std::vector<double> figures, floors, ratios;
            for (int pair = 0; pair < 10; ++pair) {
                floors.push_back(tick(application, page));
                figures.push_back(tick(application, *other.page));
                ratios.push_back(figures.back() / floors.back());
            }
            std::string label = table.text({column, 0});
            std::ranges::replace(label, ' ', '-');
            fmt::print("sorted {:.1f} {:.1f} {:.2f} {}{}\n", median(figures), median(floors), median(ratios),
                       label, view.name);
        }
    }
}

void search(zTable& table) {
    for (const char* when : {"first", "again"}) {
        const double begin = processor();
        table.find("no cell has it");
        fmt::print("search {:.1f} - - {}\n", processor() - begin, when);
    }
}

int descriptors() {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return static_cast<int>(std::distance(begin(open), end(open)));
}

int widgets(Widget top) {
    int count = 1;
    WidgetList children = nullptr;
    Cardinal number = 0;
    if (XtIsComposite(top)) XtVaGetValues(top, XmNchildren, &children, XmNnumChildren, &number, nullptr);
    for (Cardinal i = 0; i < number; ++i) count += widgets(children[i]);
    return count;
}

// All that the server keeps for this client: windows, pixmaps, fonts, graphics contexts, pictures...
unsigned serverResources(Display* display, Window own) {
    XResType* types = nullptr;
    int number = 0;
    if (!XResQueryClientResources(display, own, &number, &types)) return 0;
    unsigned count = 0;
    for (int i = 0; i < number; ++i) count += types[i].count;
    XFree(types);
    return count;
}

void soak(zApplication& application, const zFormDialog& dialog, StatsPage& page, const char* name, long ticks,
          const char* command) {
    const Widget shell = dialog.shell();
    const auto print = [&](long tick) {
        fmt::print("{} after {} ticks: {} bytes allocated, {} KB resident, {} descriptors, {} widgets, "
                   "{} X resources\n",
                   name, tick, mallinfo2().uordblks, residentBytes() / 1024, descriptors(), widgets(shell),
                   serverResources(XtDisplay(shell), XtWindow(shell)));
    };
    for (long tick = 1; tick <= ticks; ++tick) {
        if (tick % 1000 == 0 && std::system(command) != 0) return;
        page.Update();
        application.handlePending();
        if (tick == ticks / 10 || tick == ticks) print(tick);
    }
}

// The messages of a tick.
std::vector<Message> asked(Recorder& recorder, StatsPage& page) {
    recorder.messages.clear();
    recorder.received = 0;
    platform::Device* real = platform::setDevice(&recorder);
    page.Update();
    platform::setDevice(real);
    return recorder.messages;
}

// Instructions that the processor executes in user mode for this process: callgrind counts no others.
void countInstructions(zApplication& application, StatsPage& page, const char* name, int bare,
                       const std::vector<Message>& messages) {
    constexpr int times = 100;
    std::vector<std::vector<Message>> sent(times, messages);  // an exchange puts the reply in their place
    rest();
    application.handlePending();  // what the opening of the window has left
    const auto profile = [&](const char* what, auto step) {
        const std::string title = fmt::format("{} {}", name, what);
        CALLGRIND_ZERO_STATS;
        CALLGRIND_START_INSTRUMENTATION;
        for (int i = 0; i < times; ++i) {
            step(i);
            application.handlePending();
        }
        CALLGRIND_STOP_INSTRUMENTATION;
        CALLGRIND_DUMP_STATS_AT(title.c_str());
    };
    profile("tick", [&](int) { page.Update(); });
    profile("exchanges", [&](int i) { replay(bare, sent[asIndex(i)]); });
}

}  // namespace

int main(int argc, char** argv) {
    const bool soaks = argc == 4, instructions = argc == 2 && argv[1] == std::string_view("instructions");
    const int lesRows = argc == 2 ? std::atoi(argv[1]) : 0;
    const int pairs = lesRows > 20000 ? 10 : lesRows ? 20 : 40;
    zApplication application("tarvolin", "Tarvolin", {}, fallbackResources);
    if (!application.openDisplay()) return 1;
    zSetPictures(programPictures());
    DriverChannel channel;
    const int bare = platform::device().open(devbase, O_RDONLY);  // of what is sent again
    if (!channel.open(O_RDONLY) || bare < 0) return 1;
    Recorder recorder;
    for (const auto& row : pages) {
        if (lesRows && row.name != std::string_view("LES")) continue;
        const long before = residentBytes();
        const Shown shown(application, channel, 0, row.make);
        StatsPage* const page = shown.page.get();
        const long grown = residentBytes() - before;
        if (soaks) {
            soak(application, shown.dialog, *page, row.name, std::atol(argv[2]), argv[3]);
            continue;
        }
        if (instructions) {
            countInstructions(application, *page, row.name, bare, asked(recorder, *page));
            continue;
        }

        std::vector<double> figures, floors, ratios;
        for (int pair = 0; pair < pairs; ++pair) {
            std::vector<Message> messages = asked(recorder, *page);
            application.handlePending();

            // Both come after a rest: what a processor has forgotten meanwhile is part of a tick.
            rest();
            double begin = processor();
            page->Update();
            application.handlePending();
            const double tick = processor() - begin;
            rest();
            begin = processor();
            replay(bare, messages);
            application.handlePending();  // a turn of the loop is no page's
            const double floor = processor() - begin;
            figures.push_back(tick);
            floors.push_back(floor);
            ratios.push_back(figures.back() / floors.back());
        }
        fmt::print("{} {:.1f} {:.1f} {:.2f}", row.name, median(figures), median(floors), median(ratios));
        if (lesRows) fmt::print(" {:.0f}", static_cast<double>(grown - recorder.received) / lesRows);
        fmt::print("\n");
        if (!lesRows) continue;
        scroll(application, channel, tableOf(shown.dialog));
        sorted(application, channel, *page);
        search(tableOf(shown.dialog));
    }
}
