#include "ui/config/elandlg.h"

#include "toolkit/controls/edit.h"
#include "ui/config/confids.h"
#include "ui/fieldmasks.h"

esiSelector esiSelectorXferBuffer;

namespace {

constexpr zControlRow rows[] = {
    {.id = esiSelectorLBL, .kind = zKind::staticText, .place = {34, 8, 49, 10}, .text = "ESI/Selector:"},
    {.id = esiSelectorED, .kind = zKind::edit, .place = {34, 21, 78, 12}, .mask = &esiSelectorField},
    okRow({15, 62, 50, 18}),
    cancelRow({78, 62, 50, 18}),
    messageRow({6, 84, 133, 24}),
};

constexpr zLayout layout{.id = 565,
                         .name = "elanClient",
                         .caption = "Add ELAN Client",
                         .width = 145,
                         .height = 112,
                         .icon = programIcon,
                         .rows = rows};

}  // namespace

DElandlg::DElandlg(zWindow& parent) : SubDialog(parent, layout) {
    for (const char c : std::string_view(esiSelectorXferBuffer.GetF2EsiSelector()))
        if (atox(c) >= 0) digits_ += c;
    control<zEdit>(esiSelectorED).bind(&digits_);
    board().load();
}

void DElandlg::StoreDefaults() {
    board().store();
    esiSelectorXferBuffer = control<zEdit>(esiSelectorED).text();
}
