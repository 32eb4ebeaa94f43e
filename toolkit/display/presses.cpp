#include "toolkit/display/presses.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

std::vector<const zPresses*> all;
XtEventDispatchProc usual = nullptr;

}  // namespace

struct zPresses::Dispatch {
    static Boolean event(XEvent* event) {
        for (const zPresses* presses : all) presses->heard_(*event);
        return usual(event);
    }
};

zPresses::zPresses(Display* display, std::function<void(XEvent& event)> heard) : heard_(std::move(heard)) {
    all.push_back(this);
    // There is one such handler for all: two that call each other would never come to an end.
    for (const int type : {KeyPress, ButtonPress})
        if (const auto before = XtSetEventDispatcher(display, type, Dispatch::event);
            before != Dispatch::event)
            usual = before;
}

zPresses::~zPresses() {
    std::erase(all, this);
}
