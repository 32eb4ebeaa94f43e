// The "LECS" page: the LAN Emulation Configuration Server, its defaults and its counters.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"

class DStatsDlgLECSPG final : public StatsPage {
  public:
    explicit DStatsDlgLECSPG(const StatsSource& source);

    bool UpdateDisplay(int index, bool clear);  // false if the server is absent or does not answer

  private:
    void refresh(bool clear) override { UpdateDisplay(0, clear); }
    metrics::Place place() const override { return {metrics::Service::lecs, adapter_, 0}; }
    void showRegistration(const LecsStatsView& stats, std::uint32_t state);

    lecsInfo query_;
    FieldMap<LecsStatsView> fields_;
    myBitmapButton lamp_;
    myBitmapButton registered_;
};
