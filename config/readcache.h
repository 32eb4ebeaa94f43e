// What is known of the files that were read, so that the same text is not searched and read a second time.
#pragma once

#include "config/keytable.h"
#include "config/listform.h"
#include "config/pdf_io.h"
#include "model/tvdatbuf.h"

#include <array>
#include <bitset>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

// 128 bits: no two texts of a file's life have the same.
std::string hashOf(std::string_view text);

template <class List> struct ReadList {
    std::string hash;  // of the text; empty: of none
    ListForm form;
    List entries;  // of a text that is such a list
};

// A section as a new record reads it, and which keys have a value.
template <class Record> struct ReadSection {
    Record record;
    std::bitset<mostKeys> present;
};

// The parameter file.
struct ReadParameters {
    std::string hash;  // of the text; empty: of one that is being edited
    SectionIndex index;
    std::array<std::optional<std::int32_t>, adapterCount> interruptNumbers;  // of those that were read

    // By path. A section that is written is not there any more.
    template <class Record> auto& sections() { return std::get<Sections<Record>>(sections_); }

  private:
    template <class Record> using Sections = std::map<std::string, ReadSection<Record>>;
    std::tuple<Sections<AtmSig>, Sections<AtmLEC>, Sections<AtmLES>, Sections<AtmLECS>, Sections<AtmIP1577>>
        sections_;
};

class ReadCache {
  public:
    ReadParameters parameters;

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
