// Paints the cells of a table into a pixmap of the canvas's size, which is then copied to the window. Inside
// the toolkit only.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/fonts.h"
#include "toolkit/display/widget.h"

#include <memory>
#include <string>
#include <string_view>

class zTablePaint {
  public:
    // Colours and the default font come from the resources selectColor, gridColor and tableFont of the
    // canvas, which must outlive this object.
    explicit zTablePaint(Widget canvas);
    ~zTablePaint();
    zTablePaint(const zTablePaint&) = delete;
    zTablePaint& operator=(const zTablePaint&) = delete;

    // A Fontconfig pattern, as "Liberation Sans:size=12". The default if it is empty or cannot be opened.
    void setFont(const std::string& pattern);
    zFont font() const;  // the font that was opened, which can differ from the pattern
    int textWidth(std::string_view text) const;
    int textHeight() const;

    // Creates a pixmap of this size, filled with the background. The canvas must be realized.
    void resize(int width, int height);

    enum class Mark { none, up, down };  // a triangle beside the text
    int markWidth() const;               // what it needs
    struct Look {
        bool label, selected, active, greyed;
        Mark mark = Mark::none;
    };
    // Paints the visible part of a cell into the pixmap. Labels are centred, other texts are right-aligned; a
    // text that is too wide is shortened and ends in "...".
    void cell(const zRect& whole, const zRect& visible, std::string_view text, const Look& look);
    void clear(const zRect& area);
    void show(const zRect& area);  // copies it to the window

  private:
    struct Tools;

    int text(const zRect& whole, const zRect& visible, std::string_view text, const Look& look);
    int markHeight() const;
    void mark(const zRect& whole, const zRect& visible, int left, const Look& look);

    std::unique_ptr<Tools> tools_;
};
