// Something that is done once, from the event loop, when everything on the screen has been painted: what
// blocks the loop then leaves no window empty.
#pragma once

#include "toolkit/window/timer.h"

#include <functional>
#include <memory>

class zAfterPainting {
  public:
    // `run` may destroy this object; destroying it before cancels.
    zAfterPainting(zApplication& application, std::function<void()> run);
    ~zAfterPainting();
    zAfterPainting(const zAfterPainting&) = delete;
    zAfterPainting& operator=(const zAfterPainting&) = delete;

  private:
    void tick();

    zApplication& application_;
    std::function<void()> run_;
    std::unique_ptr<zTimer> timer_;
};
