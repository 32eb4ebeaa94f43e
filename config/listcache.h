// The list files that were read, so that a text is not read into entries a second time.
#pragma once

#include "config/listform.h"
#include "model/tvdatbuf.h"

#include <map>
#include <string>
#include <string_view>
#include <tuple>

template <class List> struct ReadList {
    std::string hash;  // of the text; empty: of none
    ListForm form;
    List entries;  // of a text that is such a list
};

class ListCache {
  public:
    // What a text is as a list of this kind. `name` is the file's. The result holds until the next call with
    // the same name.
    template <class List> const ReadList<List>& read(const std::string& name, std::string_view text);

    // The text was made of these entries; it reads as them.
    template <class List> void note(const std::string& name, std::string_view text, const List& entries);

  private:
    template <class List> using Known = std::map<std::string, ReadList<List>>;
    std::tuple<Known<std::vector<AtmRoutedPvc>>, Known<std::vector<AtmBridgedPvc>>,
               Known<std::vector<esiSelector>>>
        known_;
};
