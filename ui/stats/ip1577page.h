// The "1577" page: the Classical IP client, its counters and its connections.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"
#include "ui/stats/statstable.h"

class IP1577PGConnectionTBL : public KeyedTable<IpRowView, std::int16_t> {
  public:
    IP1577PGConnectionTBL(zTable& table, const StatsSource& source);

    bool UpdateDisplay(int index, bool clear);  // false without rows or without an answer

  private:
    ip1577Info query_;
};

class DStatsDlgIP1577PG final : public StatsPage {
  public:
    explicit DStatsDlgIP1577PG(const StatsSource& source);

    bool UpdateDisplay(int index, bool clear);  // false if the client is absent or does not answer

  private:
    void refresh(bool clear) override;
    metrics::Place place() const override { return {metrics::Service::ip, adapter_, 0}; }

    ip1577Info query_;
    FieldMap<IpStatsView> fields_;
    myBitmapButton lamp_;
    IP1577PGConnectionTBL table_;
};
