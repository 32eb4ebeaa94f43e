// What is made once for a display and kept until it is closed, because making it takes longer than what it is made
// for: themes make cursors of many pictures, and finding a font takes longer than filling a table. Inside the
// toolkit only.
#pragma once

#include "toolkit/layout.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
#include <map>
#include <string>
#include <utility>

class zKept {
  public:
    explicit zKept(Display* display);
    ~zKept();
    zKept(const zKept&) = delete;
    zKept& operator=(const zKept&) = delete;

    // Of the display's application, which closes it.
    static zKept& of(Display* display);

    Cursor cursor(int shape);                            // of the cursor font
    XftFont* font(int screen, const std::string& name);  // null: there is none

    // A font as the widget library takes it: "plain", "bold" or "small". What they look like is said by the X resources
    // (Tarvolin*bold*fontName and so on).
    XmRenderTable renderTable(Widget widget, const std::string& name);
    XmRenderTable renderTable(Widget widget, const zFontRow& font) {
        return renderTable(widget, font.weight > zFontRow::normal ? "bold" : "plain");
    }

    // By number in the picture table and background. What is missing there is None, and to be filled in.
    Pixmap& pixmap(int picture, unsigned long background) { return pixmaps_[{picture, background}]; }

  private:
    Display* display_;
    std::map<int, Cursor> cursors_;
    std::map<std::string, XftFont*> fonts_;
    std::map<std::string, XmRenderTable> renderTables_;
    std::map<std::pair<int, unsigned long>, Pixmap> pixmaps_;
};
