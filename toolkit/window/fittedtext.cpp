#include "toolkit/window/fittedtext.h"

#include "toolkit/display/displaycache.h"
#include "toolkit/display/xmtext.h"

#include <algorithm>
#include <fmt/ranges.h>
#include <sstream>
#include <vector>

namespace {

// Of a text that is too long even so: what is to be done stands at its end.
constexpr std::ptrdiff_t keptAtTheEnd = 4;

// What a box has around its text: symbol, margins and a window manager's frame; buttons and a title.
constexpr int besides = 90, aboveAndBelow = 130;

struct Room {
    XmRenderTable font;
    int width, height;

    int widthOf(const std::string& line) const { return XmStringWidth(font, zXmText(line).get()); }
    bool holds(const std::string& text) const {
        Dimension needed = 0, high = 0;
        XmStringExtent(font, zXmText(text).get(), &needed, &high);
        return needed <= width && high <= height;
    }
    std::size_t lines() const {
        return static_cast<std::size_t>(
            std::max(10, height / std::max<int>(1, XmStringHeight(font, zXmText("X").get()))));
    }
    // How much of a line has room, at least one character.
    std::size_t fitting(const std::string& line) const {
        std::size_t good = 1, bad = line.size() + 1;
        while (bad - good > 1) {
            const std::size_t middle = (good + bad) / 2;
            (widthOf(line.substr(0, middle)) <= width ? good : bad) = middle;
        }
        if (good >= line.size()) return line.size();
        const std::size_t place = line.find_last_of(" /", good - 1);
        return place == std::string::npos || place == 0 ? good : place + 1;
    }
};

}  // namespace

zFittedText zFitText(Widget shell, const std::string& text) {
    const Screen* screen = XtScreen(shell);
    zDisplayCache& cache = zDisplayCache::of(XtDisplay(shell));
    Room room{cache.renderTable(shell, "bold"), WidthOfScreen(screen) - besides,
              HeightOfScreen(screen) - aboveAndBelow};
    if (room.holds(text)) return {text, "bold"};
    room.font = cache.renderTable(shell, "small");
    std::vector<std::string> lines;
    std::istringstream unbroken(text);
    for (std::string line; std::getline(unbroken, line);) {
        do {
            const std::size_t part = line.empty() ? 0 : room.fitting(line);
            lines.push_back(line.substr(0, part));
            line.erase(0, part);
        } while (!line.empty());
    }
    if (lines.size() > room.lines()) {
        const auto last = lines.end() - keptAtTheEnd;
        const auto from = lines.begin() + static_cast<std::ptrdiff_t>(room.lines()) - keptAtTheEnd - 1;
        *from = "...";
        lines.erase(from + 1, last);
    }
    return {fmt::format("{}", fmt::join(lines, "\n")), "small"};
}
