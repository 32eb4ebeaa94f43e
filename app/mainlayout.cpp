#include "app/maindlg.h"
#include "resources/pictureids.h"
#include "version.h"

namespace {

constexpr zControlRow rows[] = {
    {.id = 588, .kind = zKind::staticText, .place = {11, 9, 83, 8}, .text = "ATM Adapter Interfaces:"},
    {.id = interfaceLB, .kind = zKind::listBox, .place = {11, 23, 142, 44}},
    {.id = 589, .kind = zKind::staticText, .place = {11, 80, 54, 8}, .text = "Driver Version:"},
    {.id = driverVersionED, .kind = zKind::edit, .place = {11, 94, 80, 12}, .style = zReadOnly},
    {.id = closeBTN,
     .kind = zKind::bitmapButton,
     .place = {206, 11, 50, 18},
     .text = "Close",
     .tooltip = "Close Tarvolin",
     .picture = closeBitmap},
    {.id = setupBTN,
     .kind = zKind::bitmapButton,
     .place = {206, 38, 50, 18},
     .text = "Setup",
     .tooltip = "Setup Selected Adapter",
     .picture = setupBitmap},
    {.id = statsBTN,
     .kind = zKind::bitmapButton,
     .place = {206, 65, 50, 18},
     .text = "Stats",
     .tooltip = "Display Stats on Selected Adapter",
     .picture = statsBitmap},
    {.id = globalBTN,
     .kind = zKind::bitmapButton,
     .place = {206, 92, 50, 18},
     .text = "Global",
     .tooltip = "Configure Global Settings",
     .picture = globalBitmap},
    {.kind = zKind::frame, .place = {187, 0, 1, 123}, .name = "separator"},
};

}  // namespace

const zLayout mainLayout{.id = 562,
                         .name = "main",
                         .caption = programTitle,
                         .width = 274,
                         .height = 123,
                         .font = {zFontRow::bold},
                         .icon = programIcon,
                         .rows = rows};
