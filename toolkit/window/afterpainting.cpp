#include "toolkit/window/afterpainting.h"

#include <X11/Xlib.h>

zAfterPainting::zAfterPainting(zApplication& application, std::function<void()> run)
    : application_(application), run_(std::move(run)),
      timer_(std::make_unique<zTimer>(application, 1, [this] { tick(); })) {}

zAfterPainting::~zAfterPainting() = default;

void zAfterPainting::tick() {
    // After the round trip everything that the server wants painted is in the queue, and everything painted
    // is on the screen.
    auto* display = static_cast<Display*>(application_.display());
    XSync(display, False);
    if (XPending(display)) return;
    const auto run = std::move(run_);
    timer_.reset();
    run();
}
