// Random actions in a plot window, while values come. TV_SEED sets other random numbers.
#include "tests/plot/plotdesk.h"

#include <random>

using namespace std::chrono;

namespace {

constexpr zPlotKey keys[] = {{"1"},
                             {"2"},
                             {"3"},
                             {"4"},
                             {"space"},
                             {"Prior"},
                             {"Next"},
                             {"Home"},
                             {"End"},
                             {"Left"},
                             {"Right"},
                             {"Left", true},
                             {"c"},
                             {"Up"},
                             {"Down"},
                             {"plus"},
                             {"minus"},
                             {"a"},
                             {"Tab"},
                             {"Right", true},
                             {"Left", false, true},
                             {"Right", false, true},
                             {"KP_Add"},
                             {"x"}};

class RandomPlot : public PlotDeskTest {
  protected:
    std::mt19937 random{static_cast<unsigned>(std::getenv("TV_SEED") ? std::atoi(std::getenv("TV_SEED"))
                                                                     : 11)};  // NOLINT(cert-err34-c)

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    void press(const zPlotKey& key) {
        if (window->plot().onKey) window->plot().onKey(key);
    }
    void open() {
        fed.clear();
        window = std::make_unique<DPlotDlg>(application, "adapter 1");
        window->show();
        user.settle();
    }
    Widget canvas() const { return window->plot().widget(); }

    void act(int number) {
        switch (below(16)) {
        case 0:
            add(fmt::format("value {}", below(12)), below(3) ? "packets/s" : below(2) ? "cells/s" : "");
            break;
        case 1:
            if (below(3) == 0) press({"Delete"});
            break;
        case 2:
            user.clickAt(canvas(), below(500), below(380), 1);
            break;
        case 3:
            if (below(8) == 0) user.resize(window->shell(), 300 + below(700), 200 + below(600));
            break;
        case 4:
            if (below(4) == 0) {
                user.key("Menu");
                user.key(below(2) ? "Escape" : "Down");
                user.key("Escape");
            }
            break;
        case 5:
            if (number % 97 == 0) open();
            break;
        default:
            press(keys[below(static_cast<int>(std::size(keys)))]);
        }
    }
};

}  // namespace

TEST_F(RandomPlot, StandsThousandsOfActions) {
    for (int i = 0; i < 2500; ++i) {
        act(i);
        const milliseconds later(below(50) ? 100 + below(400) : below(3'600'000));
        step(later, [this](std::size_t) -> std::optional<float> {
            if (below(10) == 0) return {};
            return static_cast<float>(below(20) ? below(1000) : below(400'000));
        });
        if (i % 10 == 0) application.handlePending();
        const zPlotPicture& picture = window->plot().picture();
        ASSERT_LE(picture.shown().size(), 8U);
        ASSERT_TRUE(picture.shown().empty() || picture.selected() < picture.shown().size());
        ASSERT_TRUE(!picture.cursor() || (picture.cursorX() >= picture.places().left &&
                                          picture.cursorX() < picture.places().right));
        for (const auto& scale : picture.scales()) ASSERT_GE(scale.range.maximum(), 1);
    }
    // It still works: what it shows is what it would show anew.
    press({"End"});
    press({"1"});
    user.settle();
    EXPECT_TRUE(user.shellLike("Plot of"));
}

TEST_F(RandomPlot, EveryRowOfTheMenuHasItsKey) {
    add("value", "cells/s");
    const auto first = now;
    for (int i = 0; i < 300; ++i) step(1s, [](std::size_t) { return 50.F; });
    const auto& picture = window->plot().picture();
    // Keys, and what holds then.
    const struct {
        zPlotKey key;
        std::function<bool()> so;
    } rows[] = {
        {{"2"}, [&] { return picture.span() == 10min; }},
        {{"4"}, [&] { return picture.span() == 24h; }},
        {{"1"}, [&] { return picture.span() == 1min; }},
        {{"space"}, [&] { return picture.isHeld(); }},
        {{"space"}, [&] { return !picture.isHeld(); }},
        {{"Prior"}, [&] { return picture.isHeld() && picture.until() < picture.now(); }},
        {{"Next"}, [&] { return !picture.isHeld(); }},
        {{"Left", true}, [&] { return picture.isHeld(); }},
        {{"End"}, [&] { return !picture.isHeld(); }},
        {{"Home"}, [&] { return picture.isHeld() && abs(picture.from() - plotTimeOf(first)) < 2s; }},
        {{"End"}, [&] { return !picture.isHeld(); }},
        {{"Left"}, [&] { return picture.cursor() == picture.shown()[0].columns.last(); }},
        {{"Left", false, true}, [&] { return picture.cursor() == picture.shown()[0].columns.last() - 10; }},
        {{"Right"}, [&] { return picture.cursor() == picture.shown()[0].columns.last() - 9; }},
        {{"c"}, [&] { return !picture.cursor(); }},
        {{"plus", true}, [&] { return picture.scales()[0].range.maximum() == 100; }},
        {{"minus"}, [&] { return picture.scales()[0].range.maximum() == 50; }},
        {{"a"}, [&] { return !picture.scales()[0].range.isFixed(); }},
        {{"Delete"}, [&] { return picture.shown().empty(); }}};
    for (const auto& row : rows) {
        press(row.key);
        EXPECT_TRUE(row.so()) << row.key.name;
    }
    bool closed = false;
    window->onClosed = [&] { closed = true; };
    press({"w", false, true});
    EXPECT_TRUE(closed);
    closed = false;
    user.focus(window->shell());
    user.key("Escape");
    EXPECT_TRUE(closed);
}

TEST_F(RandomPlot, RoomIsForEightAndEachValueIsThereOnce) {
    for (int i = 0; i < 8; ++i) EXPECT_TRUE(add(fmt::format("value {}", i), "cells/s"));
    EXPECT_FALSE(window->canAdd("another one"));
    EXPECT_FALSE(add("one more", "cells/s"));
    press({"Delete"});
    EXPECT_FALSE(add("value 5", "cells/s")) << "it is there";
    EXPECT_TRUE(add("one more", "packets/s"));
    // The new line has the look that has become free.
    std::set<int> looks;
    for (const auto& shown : window->plot().picture().shown()) looks.insert(shown.look);
    EXPECT_EQ(looks.size(), 8U);
    EXPECT_EQ(window->plot().picture().scales().size(), 2U);
}
