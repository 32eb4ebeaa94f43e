// The sections of the parameter file, and the names that list files get where it has none for them.
#pragma once

#include <fmt/format.h>
#include <string>
#include <string_view>

inline std::string sectionPath(int adapter, std::string_view name) {
    return fmt::format("/Adapter{}/{}", adapter, name);
}
inline std::string sectionPath(int adapter, std::string_view name, int instance) {
    return fmt::format("/Adapter{}/{}{}", adapter, name, instance);
}

inline std::string lecPvcFile(int adapter, int lec) {
    return fmt::format("/etc/atm/pvcconf{}.{}", adapter, lec);
}
inline std::string ipPvcFile(int adapter) {
    return fmt::format("/etc/atm/pvcconf{}.32", adapter);
}
// Only in a new parameter file: a save names no client table.
inline std::string elanClientFile(int adapter, int les) {
    return fmt::format("/etc/atm/elan{}.{}", adapter, les);
}
