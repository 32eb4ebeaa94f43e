// version: of this program.
#include "version.h"
#include "ctl/command.h"

#include <fmt/format.h>

Run addVersion(CLI::App&) {
    return [](Session&) {
        Output output;
        output.tree.put("program", {"tvctl", {}});
        output.tree.put("version", {versionNumber, {fmt::format("tvctl {}", versionNumber)}});
        return output;
    };
}
