// Random hands at the real tool: clicks, keys, pasting, drags, windows of other sizes and a driver that
// changes meanwhile. TV_MONKEY sets for how many seconds, TV_SEED other random numbers.
#include "tests/e2e/outsideuser.h"
#include "tests/toolkit/otherclient.h"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <random>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* keys[] = {"Tab",    "Tab",   "Return", "Escape", "space", "Up",     "Down",
                                "Left",   "Right", "Home",   "End",    "Prior", "Next",   "BackSpace",
                                "Delete", "F1",    "F5",     "F10",    "Menu",  "0",      "1",
                                "9",      "a",     "f",      "z",      "minus", "period", "numbersign"};
constexpr struct {
    const char* name;
    const char* held;
} chords[] = {{"v", "Control_L"}, {"c", "Control_L"}, {"x", "Control_L"},    {"a", "Control_L"},
              {"Tab", "Shift_L"}, {"F10", "Shift_L"}, {"Insert", "Shift_L"}, {"slash", "Control_L"},
              {"r", "Control_L"}, {"t", "Control_L"}, {"f", "Control_L"},    {"g", "Control_L"}};
constexpr const char* orders[] = {"clock step 60",       "clock run",
                                  "clock freeze",        "alarm 1 los on",
                                  "alarm 1 los off",     "set lec 1.1 state 1",
                                  "set lec 1.1 state 6", "rows les 1.1 300",
                                  "rows les 1.1 auto",   "fault lec.state every resp 5",
                                  "fault clear"};
const std::string pasted[] = {"8:0:20:1:2:3", "47.0005.80ff.e100.0000.f21a.26d8.0020d4144ab8.01",
                              "300.1.1.1",    std::string(5000, 'x'),
                              "\xe4\xf6\xfc", "10.1.2.3\n4544\t"};

int fromEnvironment(const char* name, int usual) {
    const char* value = std::getenv(name);
    return value ? std::atoi(value) : usual;
}

class Monkey : public XInput {
    int below(int limit) { return std::uniform_int_distribution<int>(0, std::max(limit, 1) - 1)(random_); }
    bool chance(int oneIn) { return below(oneIn) == 0; }
    static unsigned asUnsigned(int number) { return static_cast<unsigned>(number); }
    template <class Range> auto& one(const Range& range) {
        return range[static_cast<std::size_t>(below(static_cast<int>(std::size(range))))];
    }

  public:
    Monkey() {
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }

    void act(const Simulator& simulator) {
        const auto windows = shownWindows(display_);
        if (windows.empty()) return;
        // Mostly the uppermost: the others wait for it.
        const Window window = chance(5) ? one(windows) : windows.back();
        XWindowAttributes area{};
        if (!XGetWindowAttributes(display_, window, &area) || area.map_state != IsViewable) return;
        const auto anywhere = [&] { return Spot{area.x + below(area.width), area.y + below(area.height)}; };
        giveKeyboard(window);
        switch (below(16)) {
        case 0: {
            XMoveResizeWindow(display_, window, below(300), below(300), 200u + asUnsigned(below(900)),
                              150u + asUnsigned(below(800)));
            break;
        }
        case 1: {
            const Spot from = anywhere(), to = anywhere();
            XTestFakeMotionEvent(display_, -1, from.x, from.y, 0);
            XTestFakeButtonEvent(display_, 1, True, 0);
            XTestFakeMotionEvent(display_, -1, to.x, to.y, 0);
            XTestFakeButtonEvent(display_, 1, False, 0);
            break;
        }
        case 2:
            static_cast<void>(simulator.ctl(one(orders)));
            break;
        case 3:
            other_ = std::make_unique<OtherClient>(one(pasted), one(pasted));
            other_->silent = chance(8);
            break;
        case 4:
        case 5: {
            const auto& chord = one(chords);
            pressKey(chord.name, chord.held);
            break;
        }
        case 6:
        case 7:
        case 8:
        case 9:
        case 10:
            pressKey(one(keys));
            break;
        default: {
            const Spot spot = anywhere();
            pressAt(spot.x, spot.y, 1 + below(2), chance(4) ? 2 + asUnsigned(below(2)) : 1);
        }
        }
        XSync(display_, False);
    }

  private:
    std::mt19937 random_{static_cast<unsigned>(fromEnvironment("TV_SEED", 1))};
    std::unique_ptr<OtherClient> other_;
};

}  // namespace

TEST(RandomHands, NeitherEndNorHangTheTool) {
    // Random input also saves files, under any path.
    if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 2)
        GTEST_SKIP() << "the kernel has no Landlock of version 2";
    SampleRoot root;
    const Simulator simulator({"--adapters", "1,2"});
    const XServer server;
    const auto end = Clock::now() + std::chrono::seconds(fromEnvironment("TV_MONKEY", 10));
    Monkey monkey;
    long deeds = 0, ends = 0;
    while (Clock::now() < end) {
        Tool tool(root, {"-adv"});
        int status = -1;
        while (status < 0 && Clock::now() < end) {
            for (int i = 0; i < 50; ++i, ++deeds) {
                monkey.act(simulator);
                std::this_thread::sleep_for(std::chrono::milliseconds(4));
            }
            status = tool.exitStatusWithin(std::chrono::seconds(0));
        }
        if (status < 0) {
            tool.signal(SIGTERM);
            status = tool.exitStatusWithin(std::chrono::seconds(15)) - 128 - SIGTERM;
        }
        ++ends;
        ASSERT_EQ(status, 0) << tool.output();
        for (const char* word : {"Sanitizer", "runtime error", "X Error", "Error:"})
            ASSERT_FALSE(has(tool.output(), word)) << tool.output();
    }
    fmt::print("{} deeds, {} runs of the tool\n", deeds, ends);
}
