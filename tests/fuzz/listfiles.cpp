// The list file readers over a hostile text: what was read is written and read again as it was, and what is
// written is a list of its kind, of which nothing is dropped.
#include "config/listform.h"
#include "config/pvcfile.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

template <class Entry> void roundTrip(std::string_view text) {
    std::vector<Entry> first, second;
    parseList(text, "list", first);
    const std::string written = listText(first);
    parseList(written, "list", second);
    const ListForm form = listForm(written, first), given = listForm(text, first);
    if (first != second || !form.isList || !form.dropped.empty() || form.hasEntry == first.empty() ||
        (given.isList && given.dropped.empty() && given.hasEntry == first.empty())) {
        std::fprintf(stderr, "broken: %zu entries read, then %zu\n", first.size(), second.size());
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), count);
    roundTrip<AtmRoutedPvc>(text);
    roundTrip<AtmBridgedPvc>(text);
    roundTrip<esiSelector>(text);
    return 0;
}
