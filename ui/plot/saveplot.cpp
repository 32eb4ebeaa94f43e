#include "ui/plot/saveplot.h"

#include "platform/stream.h"
#include "toolkit/plot/plotfile.h"
#include "toolkit/window/filedialog.h"
#include "toolkit/window/messagebox.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <unistd.h>

namespace {

std::string hostName() {
    std::string name(256, '\0');
    if (::gethostname(name.data(), name.size() - 1) != 0) return "unknown host";
    return name.c_str();
}

}  // namespace

std::vector<std::string> plotHeading(const zPlotPicture& picture, const std::string& adapter) {
    // The zone as it is now, also of times before its rules changed the offset, as in the picture.
    const auto wall = [&](zPlotTime time) {
        return fmt::gmtime(std::chrono::floor<std::chrono::seconds>(picture.local(time)).count());
    };
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::string units;
    for (const auto& scale : picture.scales())
        units += (units.empty() ? "" : ", ") + (scale.unit.empty() ? "values" : scale.unit);
    return {fmt::format("{} of {} on {}", units.empty() ? "values" : units, adapter, hostName()),
            fmt::format("{:%Y-%m-%d %H:%M:%S} to {:%Y-%m-%d %H:%M:%S} {:%z}", wall(picture.from()),
                        wall(picture.until()), local)};
}

void savePlot(zWindow& window, const zPlot& plot, const std::string& adapter) {
    // As it stands now: it goes on while the name is asked for.
    zPlotPicture picture = plot.picture();
    picture.keepPresentValues();
    const std::vector<std::string> heading = plotHeading(picture, adapter);
    const auto file =
        zAskForNewFile(window.application(), plot.outermost(), "Save Plot (.png, .svg, or .pdf)", "plot.png");
    if (!file) return;
    const platform::HostPath place{*file};
    const std::string content = zPlotFile(picture, zPlotFormOf(*file), heading);
    if (platform::saveWhole(place, content) == 0) return;
    zMessageBox(window.application(), window.shell(), zMessageStyle::warning,
                "The plot was not saved:\n" + *file + ": " + std::strerror(errno), "Plot Not Saved");
}
