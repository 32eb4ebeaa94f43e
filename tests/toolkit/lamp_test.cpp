#include "tests/toolkit/desk.h"
#include "toolkit/controls/lamp.h"

namespace {

// Of a statistics page, and of one on a screen with twice as many pixels per inch.
constexpr zControlRow rows[] = {
    {.id = 1, .kind = zKind::lamp, .place = {10, 10, 18, 14}},
    {.id = 2, .kind = zKind::lamp, .place = {40, 10, 36, 28}},
};
constexpr zLayout layout{.name = "lamps", .caption = "Lamps", .width = 100, .height = 50, .rows = rows};

using Pixels = std::set<std::pair<int, int>>;

struct LampTest : DeskTest {
    LampTest() : DeskTest(layout) {}

    // Where a pixel differs from the one to its right or below it.
    Pixels edges(Widget lamp) const {
        user.settle();
        const WindowImage picture(lamp);
        Pixels found;
        for (int y = 0; y + 1 < picture.height; ++y)
            for (int x = 0; x + 1 < picture.width; ++x)
                if (picture.at(x, y) != picture.at(x + 1, y) || picture.at(x, y) != picture.at(x, y + 1))
                    found.emplace(x, y);
        return found;
    }
};

// How many of a hundred edge pixels of either are not in both.
double difference(const Pixels& a, const Pixels& b) {
    Pixels either = a;
    either.insert(b.begin(), b.end());
    const auto common =
        std::erase_if(either, [&](const auto& pixel) { return a.contains(pixel) && b.contains(pixel); });
    return 100.0 * static_cast<double>(either.size()) / static_cast<double>(either.size() + common);
}

}  // namespace

// For those who do not see colours, and on a printout without any.
TEST_F(LampTest, TheThreeStatesDifferInShape) {
    for (const int id : {1, 2}) {
        auto& lamp = window.control<zLamp>(id);
        lamp.check(true);
        const Pixels lit = edges(lamp.widget());
        lamp.check(false);
        const Pixels unlit = edges(lamp.widget());
        lamp.grey(true);
        const Pixels greyed = edges(lamp.widget());
        lamp.check(true);
        EXPECT_EQ(edges(lamp.widget()), greyed);
        for (const auto& [name, share] : {std::pair("lit and unlit", difference(lit, unlit)),
                                          {"lit and greyed", difference(lit, greyed)},
                                          {"unlit and greyed", difference(unlit, greyed)}}) {
            EXPECT_GE(share, 8) << id << ' ' << name;
            RecordProperty(fmt::format("{} {}", id, name), fmt::format("{:.0f}", share));
        }
    }
}
