// The "AAL5" page: the adapter's packet and cell counters, and the alarms of its physical layer.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"

#include <vector>

class DStatsDlgAAL5PG final : public StatsPage {
  public:
    explicit DStatsDlgAAL5PG(const StatsSource& source);

    // If a query fails, the controls that show it stay as they are.
    void UpdateDisplay(int index, bool clear);

  private:
    void refresh(bool clear) override { UpdateDisplay(0, clear); }
    metrics::Place place() const override { return {metrics::Service::adapter, adapter_, 0}; }
    void driverCame() override;
    void showAlarms(const SuniStatsView& reply);
    void showNoAlarms();
    void showLinkKind(std::uint32_t kind);

    aalInfo query_;
    FieldMap<AalStatsView> counters_;
    std::vector<myBitmapButton> lamps_;
    ShownReply shownAlarms_;
    bool alarms_ = true;  // false once the driver has reported that the link has no alarms
    bool linkKindShown_ = false;
};
