// Whether a file that the configuration names as a list is one, before it is replaced or removed.
#pragma once

#include "model/tvdatbuf.h"

#include <string>
#include <string_view>
#include <vector>

// A value that is not read as it stands.
struct ListFault {
    std::size_t record;  // from 0
    const char* fault;   // "no number of its kind"
};

struct ListForm {
    bool isList = true;  // records of its kind that are read as they stand, or nothing but comments
    bool hasEntry = false;
    bool cut = false;  // in the middle of the last entry, which is not read
    std::vector<ListFault> faults;
    // What the text has beside its entries, or in place of a value, and a save would drop: "a comment", "a
    // value in record 2 that is no number of its kind". Each once.
    std::vector<std::string> dropped;
};

// The form of a text as the list of one kind. Entries of another kind make it none.
ListForm listForm(std::string_view text, const std::vector<AtmRoutedPvc>& kind);
ListForm listForm(std::string_view text, const std::vector<AtmBridgedPvc>& kind);
ListForm listForm(std::string_view text, const std::vector<esiSelector>& kind);

// The lines, from 1, where the entries of a list begin.
std::vector<int> entryLines(std::string_view text, const std::vector<AtmRoutedPvc>& kind);
std::vector<int> entryLines(std::string_view text, const std::vector<AtmBridgedPvc>& kind);
std::vector<int> entryLines(std::string_view text, const std::vector<esiSelector>& kind);

// Whether a name leads out of "/etc/atm", where only lists and the parameter file are.
bool isOutside(std::string_view name);
