#include "config/readcache.h"

#include "config/pvcfile.h"

#include <array>
#include <xxhash.h>

std::string hashOf(std::string_view text) {
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, XXH3_128bits(text.data(), text.size()));
    return {std::begin(bytes.digest), std::end(bytes.digest)};
}

template <class List> const ReadList<List>& ReadCache::read(const std::string& name, std::string_view text) {
    ReadList<List>& list = std::get<Known<List>>(known_)[name];
    std::string hash = hashOf(text);
    if (list.hash == hash) return list;
    list.hash = std::move(hash);
    list.form = listForm(text, list.entries);
    list.entries.clear();
    if (list.form.isList) parseList(text, name, list.entries);
    return list;
}

template <class List>
void ReadCache::note(const std::string& name, std::string_view text, const List& entries) {
    ReadList<List>& list = std::get<Known<List>>(known_)[name];
    list.hash = hashOf(text);
    list.form = {};
    list.form.hasEntry = !entries.empty();
    list.entries = entries;
}

#define FOR(List)                                                                                            \
    template const ReadList<List>& ReadCache::read(const std::string&, std::string_view);                    \
    template void ReadCache::note(const std::string&, std::string_view, const List&);
FOR(std::vector<AtmRoutedPvc>)
FOR(std::vector<AtmBridgedPvc>)
FOR(std::vector<esiSelector>)
#undef FOR
