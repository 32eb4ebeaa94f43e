#include "toolkit/plot/plotpainter.h"

#include "platform/index.h"
#include "toolkit/plot/plotlabels.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

using std::chrono::milliseconds;
using std::chrono::minutes;
using Number = zPlotColumns::Number;

namespace {

// The bands of more lines cover each other anyway, and colours of their own would take twice the requests.
constexpr std::size_t mostBands = 4;

constexpr int thickness = 2;  // of a line
constexpr int gap = 4;        // between texts and what they belong to
constexpr int timeGap = 12;   // between the labels of times, at least

XRectangle area(int x, int y, int width, int height) {
    return {static_cast<short>(x), static_cast<short>(y), static_cast<unsigned short>(std::max(width, 0)),
            static_cast<unsigned short>(std::max(height, 0))};
}

// The upper row of a line at this value, so that the whole line is inside the plot.
int lineTop(const zPlotPicture& picture, double value, const zPlotScale& scale) {
    return std::max(picture.yOf(value, scale) - thickness + 1, picture.places().top);
}

// A text that is too long begins with dots, since names differ at their ends.
std::string fitting(const zPlotPen& pen, const std::string& text, int room) {
    constexpr std::string_view dots = "...";
    if (pen.textWidth(text) <= room) return text;
    std::string_view shown = text;
    while (!shown.empty() && pen.textWidth(dots) + pen.textWidth(shown) > room) shown.remove_prefix(1);
    return fmt::format("{}{}", dots, shown);
}

// In parentheses behind the name. Of a scale that is not beside the plot it says how far that goes.
std::string unitText(const zPlotPicture& picture, const zPlotPicture::Shown& shown) {
    const bool beside = shown.scale == 0 || shown.scale == picture.rightScale();
    const double end = picture.scaleOf(shown).maximum();
    const std::string range = beside ? "" : fmt::format("0 to {}", zAxisLabel(end, end));
    const std::string& unit = shown.series.unit;
    if (unit.empty() && range.empty()) return {};
    return fmt::format(" ({}{}{})", unit, unit.empty() || range.empty() ? "" : ", ", range);
}

void writeRight(zPlotPen& pen, int right, int baseline, std::string_view text) {
    pen.write({right - pen.textWidth(text), baseline, text});
}

// Whether the label of a time in this column is seen as a whole.
bool hasRoomForLabel(const zPlotPicture& picture, Number column) {
    const auto& p = picture.places();
    return picture.xOf(column) - gap / 2 - p.timeLabel >= p.left;
}

// Calls see(column, time, step) for each round time in the columns from `from` to before `to`.
void eachRoundTime(const zPlotPicture& picture, Number from, Number to, auto see) {
    const zPlotTime each = picture.shown().front().columns.each();
    const zPlotTime step = zTimeStep(each, picture.places().timeLabel + timeGap);
    const zPlotTime begin = picture.local(from * each), end = picture.local(to * each);
    const zPlotTime first = (std::max(begin, zPlotTime(0)) + step - milliseconds(1)) / step * step;
    for (zPlotTime time = first; time < end; time += step) see(from + (time - begin) / each, time, step);
}

void setGround(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    std::array<short, zPlotPicture::divisions + 1> rows{};
    for (int i = 0; i <= zPlotPicture::divisions; ++i)
        rows[asIndex(i)] =
            static_cast<short>(p.bottom - 1 - i * (p.bottom - p.top - 1) / zPlotPicture::divisions);
    pen.setGround(rows, p.height);
}

void writeScales(const zPlotPicture& picture, zPlotPen& pen) {
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
            const std::string label = zAxisLabel(value, maximum);
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

void drawDashes(zPlotPen& pen, int line, int from, int until, int top) {
    for (int x = from; x < until;) {
        const zDash dash = zDashAt(line, x - from);
        const int end = std::min(x + dash.columns, until);
        const XRectangle drawn = area(x, top, end - x, thickness);
        if (dash.drawn) pen.fill(zInk::line, line, {&drawn, 1});
        x = end;
    }
}

void drawLegend(const zPlotPicture& picture, zPlotPen& pen) {
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
        pen.fill(picture.shown().size() > mostBands ? zInk::anyBand : zInk::band, shown.look, {&band, 1});
        drawDashes(pen, shown.look, from, until, middle - 1);
        const std::string name = shown.series.name + unitText(picture, shown);
        pen.write({p.nameLeft, top + p.ascent + 1, fitting(pen, name, nameRight - p.nameLeft)});
    }
    for (std::size_t i = 0; i < picture.cells(); ++i) {
        const auto [right, top] = picture.cellPlace(i);
        writeRight(pen, right, top + p.ascent + 1, picture.cellText(i));
    }
}

}  // namespace

void zPlotPainter::all(const zPlotPicture& picture, zPlotPen& pen) {
    const auto& p = picture.places();
    setGround(picture, pen);
    const XRectangle whole = area(0, 0, p.width, p.height);
    pen.fill(zInk::ground, 0, {&whole, 1});
    if (picture.shown().empty()) return;
    const Number first = picture.columnAt(p.left);
    const XRectangle seen = area(p.left, p.top, p.right - p.left, p.timeBottom - p.top);
    prepare(picture, first, picture.columnAt(p.right), first);
    prepareTimes(picture, first);
    pen.clip(&seen);
    draw(pen);
    drawTimes(pen);
    pen.clip(nullptr);
    writeScales(picture, pen);
    drawLegend(picture, pen);
}

void zPlotPainter::prepare(const zPlotPicture& picture, Number from, Number to, Number fresh) {
    const auto& p = picture.places();
    grounds_.clear();
    areas_.clear();
    batches_.clear();
    const int x = picture.xOf(from), freshX = picture.xOf(fresh);
    // The labels below are cleared only under columns that have just come.
    if (from < fresh)
        grounds_.push_back(area(x, p.top, picture.xOf(std::min(to, fresh)) - x, p.bottom - p.top));
    if (freshX < p.right) grounds_.push_back(area(freshX, p.top, p.right - freshX, p.timeBottom - p.top));
    clearCutLabels(picture, fresh);
    addTimeLines(picture, from, to, fresh);
    const bool alike = picture.shown().size() > mostBands;
    for (const auto& shown : picture.shown()) {
        addBands(picture, shown, from, to);
        if (!alike) endBatch(zInk::band, shown.look);
    }
    if (alike) endBatch(zInk::anyBand, 0);
    for (const auto& shown : picture.shown()) addLine(picture, shown, from, to);
}

std::size_t zPlotPainter::bytes() const {
    std::size_t sum = grounds_.empty() ? 0 : zXBytes::fill + grounds_.size() * zXBytes::area;
    sum += batches_.size() * zXBytes::fill + areas_.size() * zXBytes::area;
    return sum;
}

void zPlotPainter::draw(zPlotPen& pen) {
    if (!grounds_.empty()) pen.ground(grounds_);
    std::size_t begin = 0;
    for (const Batch& batch : batches_) {
        pen.fill(batch.ink, batch.line, std::span(areas_).subspan(begin, batch.end - begin));
        begin = batch.end;
    }
}

// A label that would be cut at the left edge goes as a whole.
void zPlotPainter::clearCutLabels(const zPlotPicture& picture, Number fresh) {
    const auto& p = picture.places();
    const zPlotColumns& columns = picture.shown().front().columns;
    const Number moved = columns.last() + 1 - fresh;
    const Number cut = picture.columnAt(p.left + p.timeLabel + gap / 2);  // the first with room
    eachRoundTime(picture, columns.first(), std::min(cut, columns.last() + 1), [&](Number column, auto...) {
        if (hasRoomForLabel(picture, column + moved))
            grounds_.push_back(area(p.left, p.bottom, picture.xOf(column) - p.left, p.timeBottom - p.bottom));
    });
}

// A label ends at its line, so that it never has to wait for columns that are still to come.
void zPlotPainter::prepareTimes(const zPlotPicture& picture, Number from) {
    const auto& p = picture.places();
    const Number end = picture.shown().front().columns.last() + 1;
    labels_.clear();
    eachRoundTime(picture, from, end, [&](Number column, zPlotTime time, zPlotTime step) {
        if (hasRoomForLabel(picture, column))
            labels_.push_back(
                {picture.xOf(column) - gap / 2, p.bottom + p.ascent + 1, time, step < minutes(1)});
    });
}

std::size_t zPlotPainter::bytesOfTimes() const {
    constexpr std::size_t longest = std::string_view("00:00:00").size();
    return labels_.size() * (zXBytes::writing + zXBytes::text(longest));
}

void zPlotPainter::drawTimes(zPlotPen& pen) {
    for (const Label& label : labels_)
        writeRight(pen, label.right, label.baseline, zTimeLabel(label.time, label.seconds));
}

// Areas of a batch next to each other that have the same rows become one.
void zPlotPainter::add(int x, int columns, int top, int bottom) {
    const std::size_t begin = batches_.empty() ? 0 : batches_.back().end;
    const XRectangle added = area(x, top, columns, bottom - top);
    if (areas_.size() > begin) {
        XRectangle& before = areas_.back();
        if (before.x + before.width == x && before.y == added.y && before.height == added.height) {
            before.width = static_cast<unsigned short>(before.width + added.width);
            return;
        }
    }
    areas_.push_back(added);
}

void zPlotPainter::endBatch(zInk ink, int line) {
    if (areas_.size() > (batches_.empty() ? 0 : batches_.back().end))
        batches_.push_back({ink, line, areas_.size()});
}

void zPlotPainter::addTimeLines(const zPlotPicture& picture, Number from, Number to, Number fresh) {
    const auto& p = picture.places();
    const Number end = picture.shown().front().columns.last() + 1;
    eachRoundTime(picture, std::min(from, fresh), end, [&](Number column, auto...) {
        if (column < to || column >= fresh)
            areas_.push_back(area(picture.xOf(column), p.top, 1, p.bottom - p.top));
    });
    endBatch(zInk::grid, 0);
}

void zPlotPainter::addBands(const zPlotPicture& picture, const zPlotPicture::Shown& shown, Number from,
                            Number to) {
    const zPlotScale& scale = picture.scaleOf(shown);
    for (Number column = from; column < to; ++column) {
        const zPlotBand& band = shown.columns.at(column);
        if (!(band.least < band.most)) continue;  // one value, or a gap
        const int top = lineTop(picture, band.most, scale), bottom = lineTop(picture, band.least, scale);
        if (bottom > top) add(picture.xOf(column), 1, top, bottom + thickness);
    }
}

void zPlotPainter::addLine(const zPlotPicture& picture, const zPlotPicture::Shown& shown, Number from,
                           Number to) {
    const zPlotScale& scale = picture.scaleOf(shown);
    const auto topOf = [&](Number column) -> std::optional<int> {
        const zPlotBand& band = shown.columns.at(column);
        if (zPlotColumns::isGap(band)) return {};
        return lineTop(picture, band.mean, scale);
    };
    std::optional<int> before = topOf(from - 1);
    for (Number column = from, end = from; column < to; column = end) {
        const std::optional<int> now = topOf(column);
        // Columns next to each other are often of one sample.
        const float mean = shown.columns.at(column).mean;
        for (++end; end < to && shown.columns.at(end).mean == mean;) ++end;
        if (now) {
            const auto [upper, lower] = std::minmax({*now, before.value_or(*now)});
            const bool step = !before || lower - upper >= thickness;
            if (step) add(picture.xOf(column), 1, upper, lower + thickness);
            addLevel(picture, shown.look, column + step, end, *now);
        }
        before = now;
    }
    endBatch(zInk::line, shown.look);
}

// A level piece of the line, in dashes: the ground shows between them.
void zPlotPainter::addLevel(const zPlotPicture& picture, int look, Number from, Number to, int top) {
    for (Number end = from; from < to; from = end) {
        const zDash dash = zDashAt(look, from);
        end = std::min(from + dash.columns, to);
        if (dash.drawn) add(picture.xOf(from), static_cast<int>(end - from), top, top + thickness);
    }
}

XRectangle zPlotPainter::cursorLine(const zPlotPicture& picture) {
    const auto& p = picture.places();
    return area(picture.cursorX(), p.top, 1, p.bottom - p.top);
}
