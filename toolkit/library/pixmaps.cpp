#include "toolkit/library/pixmaps.h"

// Exported by libXm, but not declared in its headers.
extern "C" Boolean _XmCachePixmap(Pixmap, Screen*, char* name, Pixel foreground, Pixel background, int depth,
                                  Dimension width, Dimension height);

void zKnowPixmap(Widget widget, Pixmap pixmap, unsigned width, unsigned height) {
    char none[] = "";  // as Motif names those that it has not read itself
    Screen* screen = XtScreen(widget);
    _XmCachePixmap(pixmap, screen, none, 1, 0, DefaultDepthOfScreen(screen), static_cast<Dimension>(width),
                   static_cast<Dimension>(height));
}
