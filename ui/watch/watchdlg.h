// "Watch for": what the user waits for of one value, and for how long it has to be so.
#pragma once

#include "toolkit/controls/messageline.h"
#include "ui/watch/conditions.h"

class DWatchDlg : public zFormDialog {
  public:
    // `conditions` gets the condition after OK, closes the dialog, and outlives it.
    DWatchDlg(Conditions& conditions, zApplication& application, const metrics::Subject& subject);

  private:
    void setDefaults();
    metrics::Criterion criterion() const;     // as shown
    std::optional<double> threshold() const;  // nothing: the field has no number
    std::string fault() const;                // what cannot be waited for; empty: nothing
    void showValue();
    void clickedOkBTN();

    Conditions& conditions_;
    metrics::Subject subject_;
    std::vector<metrics::State> states_;
    zMessageLine line_;
    std::shared_ptr<AdapterWatch> watch_;
    std::shared_ptr<const metrics::Watched> value_;
    AdapterWatch::Listener listener_;
};
