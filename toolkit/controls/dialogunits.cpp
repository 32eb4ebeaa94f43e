#include "toolkit/controls/dialogunits.h"

#include "toolkit/display/fonts.h"
#include "toolkit/display/xmtext.h"

#include <Xm/Xm.h>
#include <algorithm>

zDialogUnits zDialogUnits::ofBoard(Widget board) {
    XmRenderTable table = nullptr;
    XtVaGetValues(board, XmNlabelRenderTable, &table, nullptr);
    Dimension width = 0, height = 0;
    XmStringExtent(table, zXmText(alphabet).get(), &width, &height);
    return ofAlphabet(width, height);
}

int zDialogUnits::grown(int pixels) const {
    return std::max(pixels, pixels * baseHeight_ / zUsualTextHeight);
}

zRect zDialogUnits::pixels(const zRect& units) const {
    zRect result{x(units.x), y(units.y), 0, 0};
    result.width = std::max(1, x(units.x + units.width) - result.x);
    result.height = std::max(1, y(units.y + units.height) - result.y);
    return result;
}
