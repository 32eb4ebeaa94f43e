#include "resources/pictures.h"

#include "resources/close.xpm"
#include "resources/global.xpm"
#include "resources/information.xpm"
#include "resources/setup.xpm"
#include "resources/stats.xpm"
#include "resources/tarvolin.xpm"
#include "resources/warning.xpm"

std::span<const zPictureRow> programPictures() {
    static constexpr zPictureRow rows[] = {
        {zWarningPicture, warningPicture}, {zInformationPicture, informationPicture},
        {programIcon, tarvolinPicture},    {closeBitmap, closePicture},
        {setupBitmap, setupPicture},       {statsBitmap, statsPicture},
        {globalBitmap, globalPicture}};
    return rows;
}
