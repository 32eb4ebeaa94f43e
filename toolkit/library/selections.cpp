// Requests for a selection outlive the widget that has sent them, and a change of its owner.
#include "toolkit/library/next.h"

#include <X11/Intrinsic.h>
#include <X11/StringDefs.h>
#include <memory>
#include <set>
#include <tuple>

namespace {

// What the answer to a request is known by.
using Request = std::tuple<Atom, Atom, Time>;  // selection, target, time of the request
std::set<Request> waiting;

// The widget that wants to know, as long as it is there.
struct Asker {
    Widget widget;
    Request request;
    XtSelectionCallbackProc answered;
    XtPointer data;

    static void gone(Widget, XtPointer self, XtPointer) { static_cast<Asker*>(self)->widget = nullptr; }

    static void pass(Widget, XtPointer self, Atom* selection, Atom* type, XtPointer value,
                     unsigned long* length, int* format) {
        const std::unique_ptr<Asker> asker(static_cast<Asker*>(self));
        waiting.erase(asker->request);
        if (!asker->widget) return XtFree(static_cast<char*>(value));
        XtRemoveCallback(asker->widget, XtNdestroyCallback, gone, self);
        asker->answered(asker->widget, asker->data, selection, type, value, length, format);
    }
};

}  // namespace

// Replaces the function of libXt, which waits up to five seconds for the selection's owner and then calls for
// a widget that may be destroyed; the hidden shell above all windows asks in its place. It also takes an
// answer for that of all equal requests, and Motif frees what it has of them with the first: a second one of
// the same moment has no answer.
extern "C" void XtGetSelectionValue(Widget widget, Atom selection, Atom target,
                                    XtSelectionCallbackProc answered, XtPointer data, Time time) {
    static const auto ask = zNext<decltype(XtGetSelectionValue)>("XtGetSelectionValue");
    Widget lasting = widget;
    while (XtParent(lasting)) lasting = XtParent(lasting);
    auto asker = std::unique_ptr<Asker>(new Asker{widget, {selection, target, time}, answered, data});
    if (!waiting.insert(asker->request).second) {
        Atom nothing = None;
        unsigned long length = 0;
        int format = 8;
        return answered(widget, data, &selection, &nothing, nullptr, &length, &format);
    }
    XtAddCallback(widget, XtNdestroyCallback, Asker::gone, asker.get());
    ask(lasting, selection, target, Asker::pass, asker.release(), time);
}

// Replaces the function of libXt, which frees what waiting requests for the selection refer to, when it
// passes from one widget to another: as long as they wait, no text that is marked becomes the selection. The
// hidden shell, which owns what is copied, is always the same.
extern "C" Boolean XtOwnSelection(Widget widget, Atom selection, Time time, XtConvertSelectionProc convert,
                                  XtLoseSelectionProc lose, XtSelectionDoneProc done) {
    static const auto own = zNext<decltype(XtOwnSelection)>("XtOwnSelection");
    const auto first = waiting.lower_bound({selection, 0, 0});
    const bool asked = first != waiting.end() && std::get<0>(*first) == selection;
    return asked && XtParent(widget) ? False : own(widget, selection, time, convert, lose, done);
}
