// The clipboard: the selection CLIPBOARD, as text. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>
#include <functional>
#include <string>

// The application owns the clipboard from now on, until another client takes it or the display is closed: it
// survives the window that it was copied in. `time` is that of the event that asks for it.
void zCopyToClipboard(Widget widget, std::string text, Time time);

// Asks the owner of the clipboard for its text and calls `arrived` from the event loop, or at once if the
// owner is this application. An empty text: there is none. What `arrived` refers to may be gone by then.
void zPasteFromClipboard(Widget widget, std::function<void(const std::string&)> arrived, Time time);
