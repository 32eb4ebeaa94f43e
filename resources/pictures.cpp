#include "resources/pictures.h"

#include "resources/add.xpm"
#include "resources/alert.xpm"
#include "resources/cancel.xpm"
#include "resources/close.xpm"
#include "resources/delete.xpm"
#include "resources/global.xpm"
#include "resources/information.xpm"
#include "resources/insert.xpm"
#include "resources/modify.xpm"
#include "resources/ok.xpm"
#include "resources/question.xpm"
#include "resources/setup.xpm"
#include "resources/stats.xpm"
#include "resources/tarvolin.xpm"
#include "resources/warning.xpm"

std::span<const zPictureRow> programPictures() {
    static constexpr zPictureRow rows[] = {
        {zWarningPicture, warningPicture},   {zInformationPicture, informationPicture},
        {zQuestionPicture, questionPicture}, {programIcon, tarvolinPicture},
        {globalIcon, globalPicture},         {statsIcon, statsPicture},
        {alertIcon, alertPicture},           {closeBitmap, closePicture},
        {setupBitmap, setupPicture},         {statsBitmap, statsPicture},
        {globalBitmap, globalPicture},       {addBitmap, addPicture},
        {modifyBitmap, modifyPicture},       {deleteBitmap, deletePicture},
        {insertBitmap, insertPicture},       {okBitmap, okPicture},
        {cancelBitmap, cancelPicture}};
    return rows;
}
