// The "LEC ..." page: one LAN Emulation Client at a time, with its connections to LES and BUS and to other clients.
#pragma once

#include "driver/dai_io.h"
#include "ui/stats/fieldmap.h"
#include "ui/stats/statspage.h"
#include "ui/stats/statstable.h"

#include <array>

// A connection to LES or BUS.
struct LesBusRow {
    std::uint16_t vci = 0;  // 0: not connected
    atmAddress remote;
    VcRowView circuit;  // false: the driver has none with this VCI

    const atmAddress& address() const { return remote; }
};

class LECPGLES_BUSTBL : public NamedRowsTable<LesBusRow> {
  public:
    LECPGLES_BUSTBL(zTable& table, const StatsSource& source);

    // False: there was no answer. A connection that is not there leaves its row as it stands, unless that is
    // another client's.
    bool UpdateDisplay(int lec, bool clear);

  private:
    std::unique_ptr<lecInfo> query_;
    std::unique_ptr<vccInfo> circuits_;
    std::array<std::array<Baselines, 4>, 4> baselines_{};  // by client and row
    int shown_ = -1;                                       // the client that the rows are of
};

// The baselines belong to VCIs, whichever client has them.
class LECPGLECTBL : public KeyedTable<LecRowView, std::uint16_t> {
  public:
    LECPGLECTBL(zTable& table, const StatsSource& source);

    bool UpdateDisplay(int lec, bool clear);  // false: no rows, or no answer

  private:
    std::unique_ptr<lecInfo> query_;
};

class DStatsDlgLECPG final : public StatsPage {
  public:
    explicit DStatsDlgLECPG(StatsSource& source);

    // 0: there is nothing to show; 2: the client is up; 1: it is in another state.
    int UpdateDisplay(int lec);

  private:
    void refresh(bool clear) override;
    void selChangeLecTB(int lec) { lec_ = lec; }

    std::unique_ptr<lecInfo> query_;
    FieldMap<LecStatsView> fields_;
    myBitmapButton lamp_;
    LECPGLES_BUSTBL lesBusTable_;
    LECPGLECTBL lecTable_;
    int lec_ = 0;  // from 0
};
