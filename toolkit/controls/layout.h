// Layout tables: what a window is built from. One row per control; the toolkit makes the widgets.
//
// Positions and sizes are in dialog units of the window's font: a horizontal unit is a quarter of the font's
// average character width, a vertical unit an eighth of its height. A control's widget is named "id" and its
// control id ("id581"); a control without an id (-1) has a short name of its own. The keyboard goes through
// the controls in the order of the rows.
#pragma once

#include <span>

struct zRect {
    int x = 0, y = 0, width = 0, height = 0;
};

enum class zKind {
    staticText,
    edit,        // one line; with a mask only what its picture allows can be typed
    numberEdit,  // an unsigned decimal number, at most as many digits as the mask has '#'
    listBox,     // unsorted; one line can be selected, or with zSeveral any number
    dropDown,    // one of its items; the height is that of the list dropped down
    checkBox,
    radioButton,   // one of the group that begins at the last row with zFirstOfGroup
    bitmapButton,  // picture and text
    lamp,          // a picture that looks like a button and shows a state
    groupBox,      // a frame with a title around what stands inside it
    tabStrip,      // tabs without pages: one of its items is selected
    notebook,      // tabs with pages, which are layouts of their own
    table,
    frame,  // a line when one side is at most 1 unit
};

enum zStyle : unsigned {
    zPlain = 0,
    zReadOnly = 1,
    zFirstOfGroup = 2,
    zDefaultButton = 4,  // pressed by Return
    zCancelButton = 8,   // pressed by Escape
    zSeveral = 16,       // a list of which several lines can be selected
    zSmallFont = 32,     // a list in the small font
};

struct zControlRow {
    int id = -1;
    zKind kind = zKind::staticText;
    zRect place = {};
    const char* text = "";
    const char* name = nullptr;  // required when id is -1
    const char* tooltip = nullptr;
    int picture = 0;  // of the picture table (picture.h); 0: none
    unsigned style = zPlain;
    const char* mask = nullptr;               // a picture in the notation of mask.h
    std::span<const char* const> items = {};  // of a drop-down list or a tab strip
};

struct zFontRow {
    enum Weight { normal = 400, bold = 700 };
    int weight = bold;  // "Helv", 12 point, in the weights that the resources `plain` and `bold` describe
};

struct zLayout {
    int id = 0;
    const char* name = "";  // of the window's shell widget, or of the page's board
    const char* caption = "";
    int width = 0, height = 0;  // dialog units
    zFontRow font = {};
    int icon = 0;  // of the picture table
    std::span<const zControlRow> rows;
};
