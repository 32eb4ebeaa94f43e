#include "toolkit/controls/factory.h"

#include "platform/index.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/choice.h"
#include "toolkit/controls/dropdown.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/lamp.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/controls/notebook.h"
#include "toolkit/controls/statics.h"
#include "toolkit/controls/tabstrip.h"
#include "toolkit/controls/textview.h"
#include "toolkit/plot/plot.h"
#include "toolkit/table/table.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace {

template <class Kind>
std::unique_ptr<zControl> make(Widget board, const zRect& place, const zControlRow& row) {
    return std::make_unique<Kind>(board, place, row);
}

struct Maker {
    zKind kind;
    std::unique_ptr<zControl> (*make)(Widget board, const zRect& place, const zControlRow& row);
    int height = 0;  // dialog units; 0: that of the row
};

// One row per kind, in the order of zKind.
constexpr Maker makers[] = {
    {zKind::staticText, make<zStatic>},
    {zKind::edit, make<zEdit>},
    {zKind::numberEdit, make<zNumberEdit>},
    {zKind::listBox, make<zListBox>},
    {zKind::dropDown, make<zDropDown>, zDropDown::closedHeight},
    {zKind::checkBox, make<zCheckBox>},
    {zKind::radioButton, make<zRadioButton>},
    {zKind::bitmapButton, make<zBitmapButton>},
    {zKind::lamp, make<zLamp>},
    {zKind::groupBox, make<zGroupBox>},
    {zKind::tabStrip, make<zTabStrip>},
    {zKind::notebook, make<zNotebook>},
    {zKind::table, make<zTable>},
    {zKind::textView, make<zTextView>},
    {zKind::plot, make<zPlot>},
    {zKind::frame, make<zFrame>},
};
constexpr std::size_t indexOf(zKind kind) {
    return asIndex(static_cast<int>(kind));
}
static_assert(std::size(makers) == indexOf(zKind::frame) + 1);
static_assert(std::ranges::adjacent_find(makers, std::ranges::greater_equal(), &Maker::kind) ==
              std::end(makers));

}  // namespace

zRect zPlaceOf(const zDialogUnits& units, const zControlRow& row) {
    zRect place = row.place;
    if (const int fixed = makers[indexOf(row.kind)].height) place.height = fixed;
    return units.pixels(place);
}

std::unique_ptr<zControl> zCreateControl(Widget board, const zDialogUnits& units, const zControlRow& row) {
    return makers[indexOf(row.kind)].make(board, zPlaceOf(units, row), row);
}
