// The context menus of a statistics page.
#pragma once

#include "ui/stats/statspage.h"

// Gives the tables and fields of the page's board a menu: what they can copy, Save Table (tables alone) and
// Undo Clear. The page must live as long as the board.
void giveMenus(zApplication& application, const zBoard& board, StatsPage& page);
