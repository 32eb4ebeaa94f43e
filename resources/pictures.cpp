#include "resources/pictures.h"

#include "resources/close.xpm"
#include "resources/global.xpm"
#include "resources/setup.xpm"
#include "resources/stats.xpm"
#include "resources/tarvolin.xpm"

std::span<const zPictureRow> programPictures() {
    static constexpr zPictureRow rows[] = {{programIcon, tarvolinPicture},
                                           {closeBitmap, closePicture},
                                           {setupBitmap, setupPicture},
                                           {statsBitmap, statsPicture},
                                           {globalBitmap, globalPicture}};
    return rows;
}
