// The context menus of a statistics page.
#pragma once

#include "ui/stats/statspage.h"

// Keys of the dialog that do what the rows of the menus do.
constexpr char ratesKey[] = "Ctrl+R", smoothKey[] = "Ctrl+T";
constexpr char plotKey[] = "Ctrl+P", addKey[] = "Ctrl+D", watchKey[] = "Ctrl+W";

// Gives the tables and fields of the page's board a menu: what they can copy, Save Table (tables alone), Undo
// Clear, whether rates are shown, and what else becomes of the value. The page must live as long as the
// board.
void giveMenus(zApplication& application, const zBoard& board, StatsPage& page);

// Does what the row with these keys (plotKey, addKey, watchKey) does with the value that has the focus. If
// none has it, watchKey lets the user choose one of the page's place.
void watchFocused(zApplication& application, const StatsPage& page, const char* keys);
