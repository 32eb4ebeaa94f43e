#include "toolkit/plot/plotpainter.h"

#include "platform/index.h"
#include "toolkit/plot/plotlabels.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

using namespace std::chrono;
using Number = zPlotColumns::Number;

namespace {

constexpr int thickness = 2;  // of a line
constexpr int gap = 4;        // between texts and what they belong to
constexpr int timeGap = 12;   // between the labels of times, at least

XRectangle area(int x, int y, int width, int height) {
    return {static_cast<short>(x), static_cast<short>(y), static_cast<unsigned short>(std::max(width, 0)),
            static_cast<unsigned short>(std::max(height, 0))};
}

// The row of a line of this thickness, so that it stays inside the plot.
int lineTop(const zPlotPicture& picture, double value, const zPlotScale& scale) {
    return std::max(picture.yOf(value, scale) - thickness + 1, picture.places().top);
}

// Areas next to each other that have the same rows become one.
void append(std::vector<XRectangle>& areas, int x, int top, int bottom) {
    if (!areas.empty()) {
        XRectangle& last = areas.back();
        if (last.x + last.width == x && last.y == top && last.y + last.height == bottom) {
            ++last.width;
            return;
        }
    }
    areas.push_back(area(x, top, 1, bottom - top));
}

// So much of a text as has room.
std::string_view fitting(const zPlotPen& pen, std::string_view text, int room) {
    while (!text.empty() && pen.textWidth(text) > room) text.remove_suffix(1);
    return text;
}

void writeRight(zPlotPen& pen, int right, int baseline, std::string_view text) {
    pen.write({right - pen.textWidth(text), baseline, text});
}

// The round time in a column, if there is one.
std::optional<zPlotTime> roundTime(const zPlotPicture& picture, Number column, zPlotTime each,
                                   zPlotTime step) {
    const zPlotTime end = picture.local((column + 1) * each) - milliseconds(1);
    const zPlotTime round = end / step * step;
    if (end < zPlotTime(0) || end - round >= each) return {};
    return round;
}

}  // namespace

void zPlotPainter::setGround(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    std::array<short, zPlotPicture::divisions + 1> rows{};
    for (int i = 0; i <= zPlotPicture::divisions; ++i)
        rows[asIndex(i)] =
            static_cast<short>(p.bottom - 1 - i * (p.bottom - p.top - 1) / zPlotPicture::divisions);
    pen.setGround(rows, p.height);
}

void zPlotPainter::all(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    setGround(picture, pen);
    const XRectangle whole = area(0, 0, p.width, p.height);
    pen.fill(zInk::ground, 0, {&whole, 1});
    if (picture.shown().empty()) return;
    const Number first = picture.columnAt(p.left);
    const XRectangle seen = area(p.left, p.top, p.right - p.left, p.timeBottom - p.top);
    pen.clip(&seen);
    columns(picture, pen, first, first);
    pen.clip(nullptr);
    scales(picture, pen);
    legend(picture, pen);
    cursorTexts(picture, pen);
}

void zPlotPainter::columns(const zPlotPicture& picture, zPlotPen& pen, Number from, Number fresh) {
    const auto& p = picture.places();
    const int x = picture.xOf(from);
    const int freshX = picture.xOf(fresh);
    const XRectangle grounds[] = {area(x, p.top, p.right - x, p.bottom - p.top),
                                  area(freshX, p.bottom, p.right - freshX, p.timeBottom - p.bottom)};
    pen.ground(std::span(grounds).first(freshX < p.right ? 2 : 1));
    times(picture, pen, from, fresh);
    lines(picture, pen, from);
}

void zPlotPainter::times(const zPlotPicture& picture, zPlotPen& pen, Number from, Number fresh) {
    const auto& p = picture.places();
    const zPlotColumns& columns = picture.shown().front().columns;
    const zPlotTime each = columns.each(), step = zTimeStep(each, p.timeLabel + timeGap);
    areas_.clear();
    // A label ends at its line: the line of one that is cut off on the right is not there yet.
    for (Number column = from; column <= columns.last(); ++column) {
        const auto time = roundTime(picture, column, each, step);
        if (!time) continue;
        const int x = picture.xOf(column);
        areas_.push_back(area(x, p.top, 1, p.bottom - p.top));
        if (column >= fresh)
            writeRight(pen, x - gap / 2, p.bottom + p.ascent + 1, zTimeLabel(*time, step < minutes(1)));
    }
    if (!areas_.empty()) pen.fill(zInk::grid, 0, areas_);
}

void zPlotPainter::lines(const zPlotPicture& picture, zPlotPen& pen, Number from) {
    const auto flush = [&](zInk ink, int line) {
        if (!areas_.empty()) pen.fill(ink, line, areas_);
        areas_.clear();
    };
    areas_.clear();
    for (const auto& shown : picture.shown()) {
        const zPlotScale& scale = picture.scaleOf(shown);
        for (Number column = from; column <= shown.columns.last(); ++column) {
            const zPlotBand& band = shown.columns.at(column);
            if (zPlotColumns::isGap(band)) continue;
            const int top = lineTop(picture, band.most, scale), bottom = lineTop(picture, band.least, scale);
            if (bottom > top) append(areas_, picture.xOf(column), top, bottom + thickness);
        }
        flush(zInk::band, shown.look);
    }
    for (const auto& shown : picture.shown()) {
        const zPlotScale& scale = picture.scaleOf(shown);
        const auto topOf = [&](Number column) -> std::optional<int> {
            const zPlotBand& band = shown.columns.at(column);
            if (zPlotColumns::isGap(band)) return {};
            return lineTop(picture, band.mean, scale);
        };
        std::optional<int> before = topOf(from - 1);
        for (Number column = from; column <= shown.columns.last(); ++column) {
            const std::optional<int> now = topOf(column);
            // A dash lets the ground through only where the line just goes on.
            const bool goesOn = now && before && std::abs(*now - *before) < thickness;
            if (now && (!goesOn || zDashed(shown.look, column)))
                append(areas_, picture.xOf(column), std::min(*now, before.value_or(*now)),
                       std::max(*now, before.value_or(*now)) + thickness);
            before = now;
        }
        flush(zInk::line, shown.look);
    }
}

void zPlotPainter::scales(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    const auto unit = [&](std::size_t scale) {
        const auto& s = picture.scales()[scale];
        return s.unit + (s.range.isFixed() ? " (fixed)" : "");
    };
    const bool dense = (p.bottom - p.top) / zPlotPicture::divisions < p.row;
    const auto labels = [&](std::size_t scale, bool left) {
        const double maximum = picture.scales()[scale].range.maximum();
        for (int i = 0; i <= zPlotPicture::divisions; ++i) {
            if (dense && i != 0 && i != zPlotPicture::divisions) continue;
            const double value = maximum * i / zPlotPicture::divisions;
            const int baseline =
                p.bottom - i * (p.bottom - p.top - 1) / zPlotPicture::divisions - p.row / 2 + p.ascent;
            const std::string label = zAxisLabel(value);
            if (left)
                writeRight(pen, p.left - gap, baseline, label);
            else
                pen.write({p.right + gap, baseline, label});
        }
    };
    const int headline = p.ascent + 1;
    labels(0, true);
    pen.write({gap, headline, unit(0)});
    if (const auto right = picture.rightScale()) {
        labels(*right, false);
        writeRight(pen, p.width - gap, headline, unit(*right));
    }
    if (!picture.isHeld()) return;
    const std::string text = "Held: " + zTimeLabel(picture.local(picture.from()), true) + " to " +
                             zTimeLabel(picture.local(picture.until()), true);
    pen.write({(p.left + p.right - pen.textWidth(text)) / 2, headline, text});
}

void zPlotPainter::legend(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    writeRight(pen, p.presentRight, picture.legendTop(0) - p.row + p.ascent + 1, "Now");
    for (std::size_t i = 0; i < picture.shown().size(); ++i) {
        const auto& shown = picture.shown()[i];
        const int top = picture.legendTop(i), middle = top + p.row / 2;
        const int nameRight = p.presentRight - pen.textWidth("0000000000");
        if (i == picture.selected()) {
            const XRectangle mark = area(gap / 2, top, nameRight - gap / 2, p.row);
            pen.fill(zInk::select, 0, {&mark, 1});
        }
        const int from = gap + gap / 2, until = p.nameLeft - gap;
        const XRectangle band = area(from, middle - p.row / 4, until - from, p.row / 2);
        pen.fill(zInk::band, shown.look, {&band, 1});
        areas_.clear();
        for (int x = from; x < until; ++x)
            if (zDashed(shown.look, x - from)) append(areas_, x, middle - 1, middle - 1 + thickness);
        pen.fill(zInk::line, shown.look, areas_);
        const std::string name = fmt::format("{} ({})", shown.series.name, shown.series.unit);
        pen.write(
            {p.nameLeft, top + p.ascent + 1,
             fitting(pen, shown.series.unit.empty() ? shown.series.name : name, nameRight - p.nameLeft)});
    }
    for (std::size_t i = 0; i < picture.shown().size(); ++i)
        writeRight(pen, p.presentRight, picture.legendTop(i) + p.ascent + 1, picture.presentText(i));
}

void zPlotPainter::cursorTexts(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    const XRectangle old = area(p.presentRight + gap, p.timeBottom + gap, p.width, p.height);
    pen.fill(zInk::ground, 0, {&old, 1});
    const auto column = picture.cursor();
    if (!column) return;
    const zPlotTime each = picture.shown().front().columns.each();
    writeRight(pen, p.cursorRight, picture.legendTop(0) - p.row + p.ascent + 1,
               "At " + zTimeLabel(picture.local(*column * each), true));
    for (std::size_t i = 0; i < picture.shown().size(); ++i)
        writeRight(pen, p.cursorRight, picture.legendTop(i) + p.ascent + 1, picture.cursorText(i));
}

XRectangle zPlotPainter::cursorLine(const zPlotPicture& picture) {
    const auto& p = picture.places();
    return area(picture.cursorX(), p.top, 1, p.bottom - p.top);
}
