// Layout tables: the controls of a window as data, one row each.
//
// Positions and sizes are in dialog units of the window's font: a horizontal unit is a quarter of the font's
// average character width, a vertical unit an eighth of its height. A control's widget is named "id" and its
// control id ("id581"); a control without an id (-1) has a short name. Tab goes through the controls in the
// order of the rows.
#pragma once

#include <span>

struct zFieldMask;

struct zRect {
    int x = 0, y = 0, width = 0, height = 0;
};

enum class zKind {
    staticText,
    edit,        // one line of text; a mask restricts what can be typed
    numberEdit,  // an unsigned decimal number, as many digits as the mask takes
    listBox,     // one line can be selected, with zSeveral any number of lines
    dropDown,    // one of its items is selected; the height includes the open list
    checkBox,
    radioButton,   // belongs to the group that the last row with zFirstOfGroup began
    bitmapButton,  // with a picture and a text
    lamp,          // a picture that looks like a button and shows a state
    groupBox,      // a frame with a title around other controls
    tabStrip,      // tabs without pages: one of its items is selected
    notebook,      // tabs with pages, each with its own layout
    table,
    textView,  // a long text to read
    plot,
    frame,  // a separator line, vertical if the width is at most 1 unit
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

// What becomes of a control in a window that is larger than its layout: in hundredths of what the window, or
// the notebook page, has more in this direction. A window of which no row says anything has a fixed size.
struct zMore {
    int right = 0, down = 0;    // it moves
    int wider = 0, higher = 0;  // it grows

    bool operator==(const zMore&) const = default;
};

struct zControlRow {
    int id = -1;
    zKind kind = zKind::staticText;
    zRect place = {};
    const char* text = "";
    const char* name = nullptr;  // required when id is -1
    const char* tooltip = nullptr;
    int picture = 0;  // its number in the picture table (picture.h); 0: none
    unsigned style = zPlain;
    const zFieldMask* mask = nullptr;         // what can be typed into an edit; null: any text
    std::span<const char* const> items = {};  // for drop-down lists and tab strips
    zMore more = {};
};

struct zFontRow {
    enum Weight { normal = 400, bold = 700 };
    int weight = bold;  // of the 12 point font that the X resources describe as "plain" and "bold"
};

struct zLayout {
    int id = 0;
    const char* name = "";  // of the window's shell widget, or of the page's board
    const char* caption = "";
    int width = 0, height = 0;  // dialog units
    zFontRow font = {};
    int icon = 0;  // its number in the picture table; 0: none
    std::span<const zControlRow> rows;
};
