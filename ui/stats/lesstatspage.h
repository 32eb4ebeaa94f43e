// The "LES ..." page: one LAN Emulation Server at a time, with its clients.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"
#include "ui/stats/statstable.h"

struct MacHash {
    std::size_t operator()(const macAddress& key) const { return myMacHashFunction(key); }
};

// Baselines are kept by client, the same for all servers.
class LESPGClientTBL : public KeyedTable<LesRowView, macAddress, MacHash> {
  public:
    LESPGClientTBL(zTable& table, const StatsSource& source);

    bool UpdateDisplay(int les, bool clear);  // false without rows or without an answer

  private:
    lesInfo query_;
};

class DStatsDlgLESPG final : public StatsPage {
  public:
    explicit DStatsDlgLESPG(const StatsSource& source);

    bool UpdateDisplay(int les);  // false if the server is absent or does not answer

  private:
    void refresh(bool clear) override;
    metrics::Place place() const override { return {metrics::Service::les, adapter_, les_}; }
    void selChangeLesTB(int les) { les_ = les; }
    void showNothing();

    lesInfo query_;
    FieldMap<LesStatsView> fields_;
    myBitmapButton lamp_;
    LESPGClientTBL table_;
    int les_ = 0;    // from 0
    int shown_ = 0;  // the one whose values are on the page
};
