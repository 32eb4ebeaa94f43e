// Process-wide values of one run. Nothing here is kept between runs.
#pragma once

#include <string>

extern int advSettings;  // 1: advanced mode, the LES and LECS pages exist
extern int timerTime;    // statistics refresh period in milliseconds
// Font of the statistics tables, in the toolkit's notation; empty: its default.
extern std::string tblFontSpec;
extern int ApiDbgCB;        // driver trace of the access interface, 0 or 1
extern int SignalingDbgCB;  // driver trace of signalling, 0 or 1
extern int IlmiDbgCB;       // driver trace of ILMI, 0 or 1

extern int currentAdapter;    // index (0 to 3) of the adapter selected in the main window
extern std::string dlgTitle;  // text of the selected adapter line, for dialog captions
