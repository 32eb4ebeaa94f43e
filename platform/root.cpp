#include "platform/root.h"

#include "platform/debuglog.h"

#include <cstdlib>

namespace platform {

std::string rootDirectory() {
    const char* value = std::getenv("TARVOLIN_ROOT");
    std::string root = value ? value : "";
    while (!root.empty() && root.back() == '/') root.pop_back();
    return root;
}

void logRootDirectory() {
    if (const std::string root = rootDirectory(); !root.empty())
        tvlog << "TARVOLIN_ROOT - " << root << std::endl;
}

HostPath hostPath(std::string_view systemPath) {
    return HostPath{rootDirectory().append(systemPath)};
}

}  // namespace platform
