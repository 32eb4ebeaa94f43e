// Where the program keeps what it knows of its own doings: /var/lib/tarvolin, for its users alone.
#pragma once

#include "platform/root.h"

#include <string_view>

constexpr std::string_view stateDirectory = "/var/lib/tarvolin";
constexpr std::string_view historyDirectory = "/var/lib/tarvolin/history";

// Makes one of the two where it is missing, with what is missing above it, and gives its place: from
// /var/lib/tarvolin on with mode 0700, above as directories of the system usually are. 0, or -1 and errno:
// EPERM when one of the two belongs to another user or can be written by others, who could put there what
// they like. A symbolic link in its place is followed: only who may write the directory above it can have
// made it.
int makeStateDirectory(std::string_view systemPath, platform::HostPath& place);
