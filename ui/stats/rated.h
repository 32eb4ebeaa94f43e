// Counters that can be shown per second, and told apart for whoever watches them.
#pragma once

#include "metrics/rates.h"
#include "metrics/subject.h"

#include <optional>

class zControl;

// Something on a page that counts: fields, or the rows of a table.
class Rated {
  public:
    virtual ~Rated() = default;

    // From now on counters are shown per second, as their labels say, or again as their growth.
    virtual void showRates(bool on) = 0;
    // To be called after each refresh while rates are shown, with the rates of what was read in it; null: it
    // was cut, and what is shown stays where it can.
    virtual void write(const metrics::Rates* rates) = 0;

    // What is counted in this control, of a table in its active cell; `place` is what the page is about.
    virtual std::optional<metrics::Subject> counted(const zControl& control,
                                                    const metrics::Place& place) const = 0;
};
