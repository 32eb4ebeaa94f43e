// The root directory in front of every system path.
//
// The tool and the simulator name system files by their usual paths ("/dev/li", "/etc/atm/tvconf"). When the
// environment variable TARVOLIN_ROOT is set and not empty, its value is put in front of them. A HostPath is a
// path that has been through this step; the file and device operations take nothing else, so it can neither
// be forgotten nor done twice. File names stored inside configuration files stay without the prefix.
#pragma once

#include <string>
#include <string_view>

namespace platform {

struct HostPath {
    std::string text;

    const char* c_str() const { return text.c_str(); }
    bool operator==(const HostPath&) const = default;
};

// The value of TARVOLIN_ROOT without trailing slashes, or empty when it is not set. Read at every call.
std::string rootDirectory();

// Sets it, as an absolute path, for this process and those that it starts.
void useRootDirectory(const std::string& path);

// Names the root directory on the debug log when there is one.
void logRootDirectory();

// The place of a system path ("/etc/atm/tvconf") on this host.
HostPath hostPath(std::string_view systemPath);

}  // namespace platform
