#include "toolkit/plot/plotpicture.h"

#include "platform/index.h"
#include "toolkit/plot/plotlabels.h"
#include "toolkit/plot/plotpen.h"

#include <algorithm>
#include <cmath>
#include <utility>

using std::chrono::hours;
using std::chrono::seconds;

namespace {

// A series may learn of times before the last tick: as far back as the driver's answer took, and, at the end
// of a gap, back to the value before the gap.
constexpr seconds learnsLate{2}, lateTicks{60};
constexpr hours oldest{24};
// How often a column is looked at while it is the newest, where it is much longer than a tick.
constexpr int looksAtColumn = 16;

constexpr int edge = 6;  // pixels around texts
constexpr int leastPlot = 20;

}  // namespace

void zPlotPicture::add(zPlotSeries series) {
    if (shown_.size() == zPlotLook::lines) return;
    int look = 0;
    while (std::ranges::any_of(shown_, [&](const Shown& shown) { return shown.look == look; })) ++look;
    shown_.push_back({std::move(series), look, 0, {}});
    assignScales();
    collectAll();
    fitScales();
}

void zPlotPicture::remove(std::size_t index) {
    if (index >= shown_.size()) return;
    shown_.erase(shown_.begin() + static_cast<std::ptrdiff_t>(index));
    if (selected_ > index || selected_ == shown_.size()) selected_ -= selected_ > 0;
    assignScales();
    collectAll();
    fitScales();
}

void zPlotPicture::select(std::size_t index) {
    if (index < shown_.size()) selected_ = index;
}

// In the order of the series. A scale that stays is kept as it is.
void zPlotPicture::assignScales() {
    const std::vector<Scale> before = std::exchange(scales_, {});
    const auto ofUnit = [](const std::string& unit) {
        return [&unit](const Scale& scale) { return scale.unit == unit; };
    };
    for (Shown& shown : shown_) {
        const std::string& unit = shown.series.unit;
        auto at = std::ranges::find_if(scales_, ofUnit(unit));
        if (at == scales_.end()) {
            const auto old = std::ranges::find_if(before, ofUnit(unit));
            scales_.push_back(old != before.end() ? *old : Scale{unit, {}});
            at = scales_.end() - 1;
        }
        shown.scale = static_cast<std::size_t>(at - scales_.begin());
    }
}

std::optional<std::size_t> zPlotPicture::rightScale() const {
    if (scales_.size() < 2) return {};
    return std::max<std::size_t>(shown_[selected_].scale, 1);
}

void zPlotPicture::setSpan(zPlotTime span) {
    span_ = span;
    collectAll();
    fitScales();
}

void zPlotPicture::hold() {
    if (!until_) until_ = now_;
}

void zPlotPicture::showNow() {
    until_.reset();
    collectAll();
    followScales();
}

void zPlotPicture::scroll(zPlotTime by) {
    const zPlotTime end = std::max(until_.value_or(now_) + by, std::max(now_ - oldest + span_, zPlotTime(0)));
    until_ = end;
    if (end >= now_) until_.reset();
    collectAll();
    followScales();
}

void zPlotPicture::showBeginning() {
    zPlotTime first = now_;
    for (const Shown& shown : shown_)
        shown.series.visit(
            std::max(now_ - oldest, zPlotTime(0)), now_,
            [&](zPlotTime begin, zPlotTime, const zPlotBand&) { first = std::min(first, begin); });
    scroll(first + span_ - until_.value_or(now_));
}

void zPlotPicture::fixScale(bool larger) {
    if (!shown_.empty()) scales_[shown_[selected_].scale].range.fix(larger);
}

void zPlotPicture::releaseScale() {
    if (shown_.empty()) return;
    const std::size_t scale = shown_[selected_].scale;
    scales_[scale].range.release(largest(scale));
}

std::optional<zPlotPicture::Number> zPlotPicture::cursor() const {
    if (!cursor_) return {};
    const Number column = zPlotColumns::columnOf(*cursor_, columns().each());
    if (column < columns().first() || column > columns().last()) return {};
    return column;
}

void zPlotPicture::setCursor(std::optional<Number> column) {
    cursor_.reset();
    if (column) cursor_ = std::clamp(*column, columns().first(), columns().last()) * columns().each();
}

int zPlotPicture::cursorX() const {
    return xOf(*cursor());
}

double zPlotPicture::largest(std::size_t scale) const {
    float most = 0;
    for (const Shown& shown : shown_)
        if (shown.scale == scale) most = std::max(most, shown.columns.largest());
    return most;
}

bool zPlotPicture::followScales() {
    bool other = false;
    for (std::size_t i = 0; i < scales_.size(); ++i) other |= scales_[i].range.follow(now_, largest(i));
    return other;
}

void zPlotPicture::fitScales() {
    for (std::size_t i = 0; i < scales_.size(); ++i) scales_[i].range.fit(largest(i));
}

void zPlotPicture::collectAll() {
    const int width = std::max(1, places_.right - places_.left);
    const zPlotTime each = std::max(span_ / width, zPlotTime(1));
    const Number last = zPlotColumns::columnOf(until_.value_or(now_), each);
    collected_ = now_;
    empty_.lay(width, each, last);
    for (Shown& shown : shown_) {
        shown.columns.lay(width, each, last);
        shown.columns.collect(shown.series, 0, [](const zPlotBand&, const zPlotBand&) { return true; });
    }
}

zPlotPicture::Change zPlotPicture::tick(zPlotTime now) {
    now_ = std::max(now_, now);
    const zPlotColumns& any = columns();
    const Number before = any.last();
    const Change none{false, before, before + 1};
    if (until_) return none;
    const Number last = zPlotColumns::columnOf(now_, any.each());
    if (last - before >= any.width()) {
        collectAll();
        followScales();
        return {true, before, 0};
    }
    if (last == before && now_ - collected_ < any.each() / looksAtColumn) return none;
    const auto columnBefore = [&](zPlotTime ago) {
        return zPlotColumns::columnOf(std::max(collected_ - ago, zPlotTime(0)), any.each());
    };
    Number from = std::min(columnBefore(learnsLate), before);
    const Number furthest = std::max(columnBefore(lateTicks), any.first());
    for (const Shown& shown : shown_) {
        Number known = before;
        while (known > furthest && zPlotColumns::isGap(shown.columns.at(known))) --known;
        from = std::min(from, known);
    }
    collected_ = now_;
    empty_.scrollTo(last);
    Number changed = before + 1;
    for (Shown& shown : shown_) {
        const zPlotScale& scale = scaleOf(shown);
        const auto same = [&](const zPlotBand& a, const zPlotBand& b) {
            if (zPlotColumns::isGap(a) || zPlotColumns::isGap(b))
                return zPlotColumns::isGap(a) == zPlotColumns::isGap(b);
            if (a.least == b.least && a.mean == b.mean && a.most == b.most) return true;
            return yOf(a.least, scale) == yOf(b.least, scale) && yOf(a.mean, scale) == yOf(b.mean, scale) &&
                   yOf(a.most, scale) == yOf(b.most, scale);
        };
        shown.columns.scrollTo(last);
        changed = std::min(changed, shown.columns.collect(shown.series, from, same));
    }
    return {followScales(), before, changed};
}

void zPlotPicture::lay(int width, int height, const zPlotPen& pen) {
    const int text = pen.textHeight(), row = text + 2;
    const int scaleWidth = pen.textWidth("0000 M") + 2 * edge;
    Places p;
    p.width = width;
    p.height = height;
    p.row = row;
    p.ascent = pen.ascent();
    p.top = row + edge;
    p.left = scaleWidth;
    p.right = std::max(p.left + leastPlot, width - (scales_.size() > 1 ? scaleWidth : 2 * edge));
    const int legend = shown_.empty() ? 0 : (static_cast<int>(shown_.size()) + 1) * row + 2 * edge;
    p.bottom = std::max(p.top + leastPlot, height - legend - row);
    p.timeBottom = p.bottom + row;
    p.cursorRight = width - 2 * edge;
    p.presentRight = p.cursorRight - pen.textWidth("000000 (000000 to 000000)") - 2 * edge;
    p.timeLabel = pen.textWidth("00:00:00");
    p.nameLeft = 2 * edge + 4 * row / 2;
    const bool other = p.right - p.left != places_.right - places_.left;
    places_ = p;
    if (other) collectAll();
}

int zPlotPicture::legendTop(std::size_t index) const {
    return places_.timeBottom + edge + (static_cast<int>(index) + 1) * places_.row;
}

std::optional<std::size_t> zPlotPicture::legendAt(int y) const {
    for (std::size_t i = 0; i < shown_.size(); ++i)
        if (y >= legendTop(i) && y < legendTop(i) + places_.row) return i;
    return {};
}

int zPlotPicture::yOf(double value, const zPlotScale& scale) const {
    const int rows = places_.bottom - places_.top - 1;
    return places_.bottom - 1 - static_cast<int>(std::lround(std::min(value / scale.maximum(), 1.0) * rows));
}

void zPlotPicture::keepPresentValues() {
    for (Shown& shown : shown_) shown.series.present = [value = shown.series.present()] { return value; };
}

std::string zPlotPicture::cellText(std::size_t cell) const {
    const std::size_t count = shown_.size();
    if (cell < count) {
        const auto value = shown_[cell].series.present();
        return value ? zValueLabel(*value) : "unknown";
    }
    const auto column = cursor();
    if (!column) return {};
    if (cell == 2 * count) return "At " + zTimeLabel(local(*column * columns().each()), true);
    const zPlotBand& band = shown_[cell - count].columns.at(*column);
    return zPlotColumns::isGap(band) ? "unknown" : zBandLabel(band);
}

zPlotPicture::CellPlace zPlotPicture::cellPlace(std::size_t cell) const {
    const std::size_t count = shown_.size();
    if (cell < count) return {places_.presentRight, legendTop(cell)};
    if (cell == 2 * count) return {places_.cursorRight, legendTop(0) - places_.row};
    return {places_.cursorRight, legendTop(cell - count)};
}
