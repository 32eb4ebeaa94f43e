#include "ui/watch/choosedlg.h"

#include "resources/pictureids.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/listbox.h"
#include "toolkit/controls/statics.h"
#include "ui/manual.h"
#include "ui/subdialog.h"

namespace {

enum ChooseControl { valuesLB = 840 };

constexpr zControlRow rows[] = {
    {.id = valuesLB, .kind = zKind::listBox, .place = {8, 19, 284, 110}, .style = zSmallFont},
    okRow({96, 138, 50, 18}),
    cancelRow({154, 138, 50, 18}),
    {.place = {8, 6, 284, 8}, .text = "", .name = "valuesLabel"},
};

constexpr zLayout frame{.id = 0,
                        .name = "watchChoice",
                        .caption = "Watch",
                        .width = 300,
                        .height = 163,
                        .font = {zFontRow::normal},
                        .icon = statsIcon,
                        .rows = rows};

}  // namespace

DChooseDlg::DChooseDlg(Conditions& conditions, zApplication& application, const metrics::Place& place)
    : zFormDialog(application, frame), conditions_(conditions) {
    std::vector<std::string> lines;
    for (const metrics::Group& group : metrics::groupsOf(place.service)) {
        if (group.isTable()) continue;
        for (const metrics::Metric& metric : group.metrics) {
            if (!metrics::canBeWatched(metric)) continue;
            subjects_.push_back({place, &group, &metric, {}});
            lines.push_back(std::string(metric.name) + ": " + metric.help);
        }
    }
    board().control<zStatic>("valuesLabel").setText(("Values of " + pathOf(place) + ':').c_str());
    auto& list = control<zListBox>(valuesLB);
    list.setLines(std::move(lines));
    list.select(0);
    list.onActivate = control<zBitmapButton>(subOkBTN).onClick = [this] { choose(); };
    control<zBitmapButton>(subCancelBTN).onClick = onClose = [this] { conditions_.closeAsking(); };
    offerManual(*this);
}

void DChooseDlg::choose() {
    const int chosen = control<zListBox>(valuesLB).selected();
    if (chosen < 0) return;
    const metrics::Subject subject = subjects_[asIndex(chosen)];
    conditions_.askFor(subject);  // the end of this object
}
