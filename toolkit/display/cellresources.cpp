#include "toolkit/display/cellresources.h"

#include <Xm/Xm.h>

zCellResources zCellResourcesOf(Widget canvas) {
    static char select[] = "#9cb8dc", grid[] = "#c0c0c0", font[] = "Liberation Sans:size=10";
    static XtResource rows[] = {{XmNselectColor, XmCSelectColor, XmRPixel, sizeof(Pixel),
                                 XtOffsetOf(zCellResources, select), XmRString, select},
                                {"gridColor", "GridColor", XmRPixel, sizeof(Pixel),
                                 XtOffsetOf(zCellResources, grid), XmRString, grid},
                                {"tableFont", "TableFont", XmRString, sizeof(char*),
                                 XtOffsetOf(zCellResources, font), XmRString, font}};
    zCellResources values{};
    XtGetApplicationResources(canvas, &values, rows, XtNumber(rows), nullptr, 0);
    return values;
}
