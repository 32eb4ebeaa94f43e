// The picture table: XPM pictures by resource number, given by the program once.
#pragma once

#include "toolkit/display/widget.h"

#include <span>
#include <vector>

struct zPictureRow {
    int id;
    const char* const* xpm;
};

// Pictures that the toolkit itself looks for. The library's own symbols are drawn where they are missing.
constexpr int zWarningPicture = 1;
constexpr int zInformationPicture = 2;
constexpr int zQuestionPicture = 3;

// The rows must outlive every window.
void zSetPictures(std::span<const zPictureRow> rows);

// Rows of the table, or null.
const zPictureRow* zFindPicture(int id);

// A picture on the display; 0: there is no such picture. Colours with the symbol "background" take `background`. It is
// made once and belongs to the toolkit.
unsigned long zPixmapOf(Widget widget, int id, unsigned long background);

// The picture as _NET_WM_ICON has it: width, height, then rows of ARGB values. Empty when there is no such
// picture.
std::vector<unsigned long> zIconData(int id);
