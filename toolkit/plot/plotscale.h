// The scale of a plot: from 0 to a round number, 1, 2 or 5 times a power of ten, which does not jump. It
// grows at once, and shrinks when a smaller number would have done for some time. The user can fix it.
#pragma once

#include "toolkit/plot/plotseries.h"

// The least round number that is not less; at least 1.
double zRoundAbove(double value);

class zPlotScale {
  public:
    static constexpr zPlotTime holds = std::chrono::seconds(30);  // before it shrinks

    double maximum() const { return maximum_; }
    bool isFixed() const { return fixed_; }

    // What has to be shown now. True: the maximum is another one.
    bool follow(zPlotTime now, double largest);
    bool fit(double largest);  // the same, without waiting to shrink

    void fix(bool larger);  // at the next larger or smaller round number
    void release(double largest);

  private:
    bool set(double maximum);

    double maximum_ = 1;
    bool fixed_ = false;
    bool less_ = false;   // a smaller maximum would do,
    zPlotTime since_{0};  // since then,
    double needed_ = 0;   // and this one for all of that time
};
