// The "Signalling" page: ILMI, QSAAL and UNI signalling of the adapter, the address registered through ILMI,
// and the frames on the two signalling circuits.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"
#include "ui/stats/statstable.h"

#include <array>
#include <vector>

class SignallingPGSigStatsTBL : public NamedRowsTable<VcRowView> {
  public:
    SignallingPGSigStatsTBL(zTable& table, const StatsSource& source);

    // Rows of circuits that the driver does not report, and all rows without an answer, stay as they are.
    void UpdateDisplay(int index, bool clear);

  private:
    std::unique_ptr<vccInfo> query_;
    std::array<Baselines, 2> baselines_{};
    ShownBytes shown_;
};

class DStatsDlgSignallingPG final : public StatsPage {
  public:
    explicit DStatsDlgSignallingPG(StatsSource& source);

    // Without an answer the page stays as it is.
    void UpdateDisplay(int index);

  private:
    void refresh(bool clear) override;

    std::unique_ptr<sigInfo> query_;
    FieldMap<LinkStateView> states_, address_;
    std::vector<myBitmapButton> lamps_;
    SignallingPGSigStatsTBL table_;
};
