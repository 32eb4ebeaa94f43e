// The picture table: XPM pictures by number. The program sets it once.
#pragma once

#include "toolkit/display/widget.h"

#include <span>
#include <vector>

struct zPictureRow {
    int id;
    const char* const* xpm;
};

// Pictures of the message boxes. Where one is missing, Motif's own symbol is shown.
constexpr int zWarningPicture = 1;
constexpr int zInformationPicture = 2;
constexpr int zQuestionPicture = 3;

// The rows must outlive every window.
void zSetPictures(std::span<const zPictureRow> rows);

// A row of the table, or null.
const zPictureRow* zFindPicture(int id);

// The Pixmap of a picture, or 0 if there is no such picture. XPM colours with the symbol "background" become
// `background`. Beside a text of this height, in pixels, it is larger if the text is larger than the usual
// one, in steps of a half; 0: as it is. The pixmap is created once per display and owned by the toolkit.
unsigned long zPixmapOf(Widget widget, int id, unsigned long background, int textHeight = 0);

// The picture in the format of _NET_WM_ICON: width, height, then rows of ARGB values. Empty if there is no
// such picture.
std::vector<unsigned long> zIconData(int id);

// Bitmaps for window managers of the old kind, which take an icon without colours: where the picture is dark,
// and where it is anything. Owned by the toolkit as pixmaps are; 0 if there is no such picture.
struct zIconBitmaps {
    unsigned long dark = 0, mask = 0;
};
zIconBitmaps zIconBitmapsOf(Widget widget, int id);
