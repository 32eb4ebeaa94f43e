#include "platform/root.h"

#include "platform/debuglog.h"

#include <cstdlib>
#include <filesystem>

namespace platform {

namespace {

std::string_view root() {
    const char* value = std::getenv("TARVOLIN_ROOT");
    std::string_view root = value ? value : "";
    while (root.ends_with('/')) root.remove_suffix(1);
    return root;
}

}  // namespace

std::string rootDirectory() {
    return std::string(root());
}

void useRootDirectory(const std::string& path) {
    ::setenv("TARVOLIN_ROOT", std::filesystem::absolute(path).c_str(), 1);
}

void logRootDirectory() {
    if (const std::string root = rootDirectory(); !root.empty())
        tvlog << "TARVOLIN_ROOT - " << root << std::endl;
}

HostPath hostPath(std::string_view systemPath) {
    const std::string_view before = root();
    HostPath path;
    path.text.reserve(before.size() + systemPath.size());
    path.text.append(before).append(systemPath);
    return path;
}

}  // namespace platform
