// The picture table: XPM pictures by resource number, given by the program once.
#pragma once

#include "toolkit/widget.h"

#include <cstddef>
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

// A picture on the display, freed with the object. Colours with the symbol "background" take `background`.
class zPixmap {
  public:
    zPixmap() = default;
    zPixmap(Widget widget, int id, unsigned long background);
    ~zPixmap();
    zPixmap(zPixmap&& other) noexcept;
    zPixmap& operator=(zPixmap&& other) noexcept;

    unsigned long handle() const { return pixmap_; }  // 0: there is no such picture
    explicit operator bool() const { return pixmap_ != 0; }

  private:
    void* display_ = nullptr;
    unsigned long pixmap_ = 0;
};

// The picture as _NET_WM_ICON has it: width, height, then rows of ARGB values. Empty when there is no such
// picture.
std::vector<unsigned long> zIconData(int id);
