// show [PATH...]: the configuration in the files; with --state what the driver reports.
#include "ctl/command.h"
#include "ctl/listing.h"
#include "ctl/state.h"

#include <algorithm>
#include <memory>

namespace {

struct Show {
    std::vector<std::string> paths;
    bool state = false;

    Output operator()(Session& session) const {
        if (state) return showState(session, paths);
        std::vector<ServiceId> services;
        FirstFailure first;
        for (const std::string& path : paths)
            first.of([&] {
                const std::vector<ServiceId> some = readPath(path);
                services.insert(services.end(), some.begin(), some.end());
            });
        first.raise();
        session.read();
        session.discovery();
        if (paths.empty())
            for (const int adapter : session.adapters()) {
                const std::vector<ServiceId> all = servicesOf(adapter);
                services.insert(services.end(), all.begin(), all.end());
            }
        Output output{configurationTree(
            services, session.devices, [&](int adapter) { return session.knowsMac(adapter); },
            [&](const ServiceId& service) { return session.unknownListOf(service).empty(); })};
        for (const ServiceId& service : services)
            if (const std::string file = session.unknownListOf(service);
                !file.empty() && output.message.empty()) {
                output.status = Status::wrongValue;
                output.message = leftOutMessage(file);
                output.where = file;
            }
        return output;
    }
};

}  // namespace

Run addShow(CLI::App& command) {
    const auto show = std::make_shared<Show>();
    command.add_option("PATH", show->paths, "adapter1, adapter1/lec2: all of it; none: everything");
    command.add_flag("--state", show->state, "What the driver reports, in place of the files");
    return [show](Session& session) { return (*show)(session); };
}
