#include "model/settings.h"

int advSettings = 0;
int timerTime = 1000;
std::string tblFontSpec;
int ApiDbgCB = 0;
int SignalingDbgCB = 0;
int IlmiDbgCB = 0;

int currentAdapter = 0;
std::string dlgTitle;
