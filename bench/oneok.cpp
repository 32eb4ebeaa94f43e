// bench_oneok nothing|value|lists|fill: one OK of the configuration dialog on adapter 1 without its windows,
// in TARVOLIN_ROOT, for counting its system calls. "fill" gives every list its full length, for "lists". With
// a driver the changed client is restarted, and what it took is kept.
#include "bench/onechange.h"
#include "driver/channel.h"
#include "model/settings.h"
#include "platform/root.h"

#include <fcntl.h>
#include <map>
#include <string>
#include <unistd.h>

int main(int argc, char** argv) {
    const std::map<std::string, Edit> edits{
        {"nothing", Edit::nothing}, {"value", Edit::value}, {"lists", Edit::lists}};
    const std::string word = argc == 2 ? argv[1] : "";
    if ((word != "fill" && !edits.contains(word)) || platform::rootDirectory().empty()) {
        fmt::print(stderr, "usage: bench_oneok nothing|value|lists|fill, with a root in TARVOLIN_ROOT\n");
        return 2;
    }
    OneChange change;
    if (word == "fill") {
        change.fill();
        return 0;
    }
    const bool driver = ioctlDesc.open(O_RDONLY);
    // What follows this line belongs to the change.
    if (::write(STDERR_FILENO, "OK\n", 3) != 3) return 1;
    change.make(edits.at(word), driver);
}
