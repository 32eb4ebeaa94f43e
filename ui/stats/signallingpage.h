// The "Signalling" page: ILMI, QSAAL and UNI signalling of the adapter, the address registered through ILMI,
// and the frames on the two signalling circuits.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"
#include "ui/stats/statstable.h"

#include <array>
#include <vector>

class SignallingPGSigStatsTBL
    : public NamedRowsTable<VcRowView, std::array<StatsTable<VcRowView>::RowCounters, 2>> {
  public:
    SignallingPGSigStatsTBL(zTable& table, const StatsSource& source);

    // The row of a circuit that the driver does not report stays as it is, or is emptied if it is old.
    // Without a table all rows stay, and it returns false.
    bool UpdateDisplay(int index, bool clear, bool old);

  private:
    void rewrite() override {
        shown_.forget();
        looked_ = false;
    }
    void emptyRow(std::size_t circuit);

    vccInfo query_;
    ShownBytes shown_;
    bool looked_ = false;  // at the rows of the last table
};

class DStatsDlgSignallingPG final : public StatsPage {
  public:
    explicit DStatsDlgSignallingPG(const StatsSource& source);

    // Without an answer the page stays as it is.
    void UpdateDisplay(int index);

  private:
    void refresh(bool clear) override;
    metrics::Place place() const override { return {metrics::Service::signalling, adapter_, 0}; }

    sigInfo query_;
    ShownReply shown_;
    FieldMap<LinkStateView> states_, address_;
    std::vector<myBitmapButton> lamps_;
    SignallingPGSigStatsTBL table_;
};
