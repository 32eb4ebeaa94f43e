// The context menus of a statistics page.
#pragma once

#include "ui/stats/statspage.h"

// Keys of the dialog that do what the rows of the menus do.
constexpr char ratesKey[] = "Ctrl+R", smoothKey[] = "Ctrl+T";

// Gives the tables and fields of the page's board a menu: what they can copy, Save Table (tables alone), Undo
// Clear, and whether rates are shown. The page must live as long as the board.
void giveMenus(zApplication& application, const zBoard& board, StatsPage& page);
