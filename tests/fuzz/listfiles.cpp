// The list file readers over a hostile text: what was read is written and read again as it was, and what is
// written stays the same from then on.
#include "../support/memoryfiles.h"
#include "config/pvcfile.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* file = "/etc/atm/pvcconf0.0";

template <class Entry> void roundTrip(MemoryFiles& files, std::string_view text) {
    files.put(file, std::string(text));
    std::vector<Entry> first, second;
    if (readListFile(file, first) != 0 || writeListFile(file, first) != 0 ||
        readListFile(file, second) != 0 || first != second) {
        std::fprintf(stderr, "broken: %zu entries read, then %zu\n", first.size(), second.size());
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), count);
    MemoryFiles files;
    roundTrip<AtmRoutedPvc>(files, text);
    roundTrip<AtmBridgedPvc>(files, text);
    roundTrip<esiSelector>(files, text);
    return 0;
}
