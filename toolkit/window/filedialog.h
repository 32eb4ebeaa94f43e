// A modal dialog that asks where to write a file.
#pragma once

#include "toolkit/window/application.h"

#include <optional>
#include <string>

// `control`: any widget of the window that asks. `name`: proposed, in the directory where the last file was
// written, at first in the one where the program was started. Replacing a file is asked for. F1 in it is F1
// in that window. Nothing: Cancel, or the application ends.
std::optional<std::string> zAskForNewFile(zApplication& application, Widget control, const std::string& title,
                                          const std::string& name);

// The shell of a widget's window.
Widget zShellOf(Widget widget);
