#include "toolkit/display/clipboard.h"

#include <X11/StringDefs.h>
#include <X11/Xatom.h>
#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

namespace {

std::string held;  // what this application has copied

// The hidden shell above all windows, which lives as long as the display.
Widget owner(Widget widget) {
    while (XtParent(widget)) widget = XtParent(widget);
    return widget;
}

Atom atom(Widget widget, const char* name) {
    return XInternAtom(XtDisplay(widget), name, False);
}

Boolean convert(Widget widget, Atom*, Atom* target, Atom* type, XtPointer* value, unsigned long* length,
                int* format) {
    const Atom targets = atom(widget, "TARGETS"), utf8 = atom(widget, "UTF8_STRING");
    const Atom all[] = {targets, utf8, XA_STRING};
    const bool asked = *target == targets;
    if (std::ranges::find(all, *target) == std::end(all)) return False;
    const void* data = asked ? static_cast<const void*>(all) : held.data();
    const std::size_t bytes = asked ? sizeof all : held.size();
    *value = XtMalloc(static_cast<Cardinal>(bytes + 1));
    std::memcpy(*value, data, bytes);
    *type = asked ? XA_ATOM : *target;
    *length = asked ? std::size(all) : bytes;
    *format = asked ? 32 : 8;
    return True;
}

// A request for the clipboard's text: as UTF-8, and as Latin-1 of an owner that does not know that.
struct Request {
    std::function<void(const std::string&)> arrived;
    bool utf8 = true;

    explicit Request(std::function<void(const std::string&)> handler) : arrived(std::move(handler)) {}

    static void send(Widget widget, std::unique_ptr<Request> request, Time time) {
        const Atom target = request->utf8 ? atom(widget, "UTF8_STRING") : XA_STRING;
        XtGetSelectionValue(widget, atom(widget, "CLIPBOARD"), target, answered, request.release(), time);
    }

    static void answered(Widget widget, XtPointer self, Atom*, Atom* type, XtPointer value,
                         unsigned long* length, int* format) {
        std::unique_ptr<Request> request(static_cast<Request*>(self));
        const std::unique_ptr<void, void (*)(void*)> data(value,
                                                          [](void* p) { XtFree(static_cast<char*>(p)); });
        const bool text = value && *type != XT_CONVERT_FAIL && *type != None && *format == 8;
        if (!text && std::exchange(request->utf8, false))
            return send(widget, std::move(request), XtLastTimestampProcessed(XtDisplay(widget)));
        request->arrived(text ? std::string(static_cast<const char*>(value), *length) : "");
    }
};

}  // namespace

void zCopyToClipboard(Widget widget, std::string text, Time time) {
    held = std::move(text);
    XtOwnSelection(owner(widget), atom(widget, "CLIPBOARD"), time, convert, nullptr, nullptr);
}

void zPasteFromClipboard(Widget widget, std::function<void(const std::string&)> arrived, Time time) {
    Request::send(owner(widget), std::make_unique<Request>(std::move(arrived)), time);
}
