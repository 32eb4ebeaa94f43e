#include "ctl/command.h"

namespace {

constexpr Command rows[] = {
    {"show", "The configuration in the files", addShow},
    {"get", "One value of it", addGet},
    {"set", "Change settings, as the fields and OK of a window would", addSet},
    {"apply", "Make the configuration that of a document", addApply},
    {"version", "The version of this program", addVersion},
};

}  // namespace

std::span<const Command> commands() {
    return rows;
}
