// The "LEC ..." page: one LAN Emulation Client at a time, with its connections to LES and BUS and to other
// clients.
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

using LecCounters = std::array<StatsTable<LesBusRow>::RowCounters, 4>;  // by row

class LECPGLES_BUSTBL : public NamedRowsTable<LesBusRow, std::array<LecCounters, 4>> {  // by client
  public:
    LECPGLES_BUSTBL(zTable& table, const StatsSource& source);

    void empty();

    // False without an answer. The row of a connection that does not exist, and counters that the driver does
    // not report, stay as they are while the same client is shown, and nothing old.
    bool UpdateDisplay(int lec, bool clear, bool old);

  private:
    void rewrite() override;

    lecInfo query_;
    vccInfo circuits_;
    int shown_ = -1;  // the client in the rows; -1: there are none
    ShownReply shownStats_;
};

// Baselines are kept by VCI, the same for all clients.
class LECPGLECTBL : public KeyedTable<LecRowView, std::uint16_t> {
  public:
    LECPGLECTBL(zTable& table, const StatsSource& source);

    bool UpdateDisplay(int lec, bool clear);  // false without rows or without an answer

  private:
    lecInfo query_;
};

class DStatsDlgLECPG final : public StatsPage {
  public:
    explicit DStatsDlgLECPG(const StatsSource& source);

    // 0: the client is absent; 2: it is up; 1: any other state.
    int UpdateDisplay(int lec);

  private:
    void refresh(bool clear) override;
    metrics::Place place() const override { return {metrics::Service::lec, adapter_, lec_}; }
    void selChangeLecTB(int lec) { lec_ = lec; }
    void showClient(bool clear);
    void showNothing();

    lecInfo query_;
    FieldMap<LecStatsView> fields_;
    myBitmapButton lamp_;
    LECPGLES_BUSTBL lesBusTable_;
    LECPGLECTBL lecTable_;
    int lec_ = 0;    // from 0
    int shown_ = 0;  // the one whose values are on the page
};
