#include "toolkit/window/placing.h"

#include "toolkit/display/database.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xutil.h>
#include <cstdlib>
#include <fmt/format.h>

namespace {

constexpr int farthest = 32767;  // that X can count

std::string part(int offset, bool fromFarEdge) {
    return fmt::format("{}{}", fromFarEdge ? '-' : '+', fromFarEdge ? -offset : offset);
}

}  // namespace

std::string zTakePlace(Display* display, std::string& refused) {
    zDatabase resources(display);
    const std::string geometry = resources.value("geometry", "Geometry");
    resources.withhold("geometry", XtRString);

    int x = 0, y = 0;
    unsigned width = 0, height = 0;
    const int found = XParseGeometry(geometry.c_str(), &x, &y, &width, &height);
    const bool readable = found != NoValue && std::abs(x) <= farthest && std::abs(y) <= farthest;
    if (!readable) refused = geometry;
    if (!readable || !(found & XValue) || !(found & YValue)) return {};
    return part(x, found & XNegative) + part(y, found & YNegative);
}

void zReadPlacing(Widget root, zPlacing& placing) {
    struct Read {
        String title;
        Boolean iconic;
    } read{};
    static XtResource resources[] = {
        {XtNtitle, XtCTitle, XtRString, sizeof(String), offsetof(Read, title), XtRImmediate, nullptr},
        {XtNiconic, XtCIconic, XtRBoolean, sizeof(Boolean), offsetof(Read, iconic), XtRImmediate, nullptr}};
    XtGetApplicationResources(root, &read, resources, XtNumber(resources), nullptr, 0);
    placing.title = read.title ? read.title : "";
    placing.iconic = read.iconic != False;
}
