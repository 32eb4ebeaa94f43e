// The per-display cache of cursors, fonts and pixmaps, and the display's alarms. What is cached is made when
// first asked for and freed when the display is closed: loading a themed cursor or matching a font takes
// longer than filling a table. Inside the toolkit only.
#pragma once

#include "toolkit/display/alarm.h"

#include <X11/Xft/Xft.h>
#include <Xm/Xm.h>
#include <array>
#include <map>
#include <string>

class zDisplayCache {
  public:
    explicit zDisplayCache(Display* display);
    ~zDisplayCache();
    zDisplayCache(const zDisplayCache&) = delete;
    zDisplayCache& operator=(const zDisplayCache&) = delete;

    // The cache of a display that an application has opened.
    static zDisplayCache& of(Display* display);

    zAlarms& alarms() { return alarms_; }

    Cursor cursor(int shape);                            // of the cursor font
    XftFont* font(int screen, const std::string& name);  // null: there is none

    // The render table "plain", "bold", "small" or "fixed", from X resources such as Tarvolin*bold*fontName.
    XmRenderTable renderTable(Widget widget, const std::string& name);

    // By what it shows: its number in the picture table, the background colour and its size, or what it is
    // drawn of. None until the caller stores the pixmap here.
    using Shown = std::array<unsigned long, 7>;
    Pixmap& pixmap(const Shown& shown) { return pixmaps_[shown]; }

  private:
    Display* display_;
    zAlarms alarms_;
    std::map<int, Cursor> cursors_;
    std::map<std::string, XftFont*> fonts_;
    std::map<std::string, XmRenderTable> renderTables_;
    std::map<Shown, Pixmap> pixmaps_;
};
