// Paints the cells of a table: into a pixmap of the canvas's size, from which the window is copied. Inside the
// toolkit only.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/fonts.h"
#include "toolkit/display/widget.h"

#include <memory>
#include <string>
#include <string_view>

class zTablePaint {
  public:
    // Colours and the default font come from the resources selectColor, gridColor and tableFont of the canvas, which
    // must outlive this object.
    explicit zTablePaint(Widget canvas);
    ~zTablePaint();
    zTablePaint(const zTablePaint&) = delete;
    zTablePaint& operator=(const zTablePaint&) = delete;

    // In the notation of font patterns, "Liberation Sans:size=12"; empty, or one that cannot be opened: the default.
    void setFont(const std::string& pattern);
    zFont font() const;  // the one that was opened, which can be another than was asked for
    int textWidth(std::string_view text) const;
    int textHeight() const;

    // A pixmap of this size, all background. The canvas has its window now.
    void resize(int width, int height);

    struct Look {
        bool label, selected, active, greyed;
    };
    // Paints the visible part of a cell. Labels are centred, other texts end at the right, so that numbers line up. One that is too wide ends in dots.
    void cell(const zRect& whole, const zRect& visible, std::string_view text, const Look& look);
    void clear(const zRect& area);
    void show(const zRect& area);  // on the window

  private:
    struct Tools;

    void text(const zRect& whole, const zRect& visible, std::string_view text, const Look& look);

    std::unique_ptr<Tools> tools_;
};
