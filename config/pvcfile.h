// The list files beside the parameter file: PVC records and ELAN client tables, as text.
//
//     [PVC
//             VC    =100      #VC index
//             Addr  =10.1.2.3 # Format:  0000778899aa=MAC 123.123.123.123=IP
//             Encap =1        # 0=Null 1=LLC
//             Bcast =0        # For Bridged PVC only; 1=Broadcast 0=Non-Broadcast
//             Rate  =0        # MB/s
//     ]
//
// A client table holds one esiSelector a line in its stream form.
#pragma once

#include "model/tvdatbuf.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

// One record's seven lines.
std::ostream& operator<<(std::ostream& out, const AtmRoutedPvc& pvc);
std::ostream& operator<<(std::ostream& out, const AtmBridgedPvc& pvc);

// The next record: everything up to a line that begins with "[PVC" is skipped, the five lines behind it may
// come in any order. A value that is not there stays as it was. A stream that ends before the end of the
// record is no longer good afterwards. Of a line only the first 79 characters count.
std::istream& operator>>(std::istream& in, AtmRoutedPvc& pvc);
std::istream& operator>>(std::istream& in, AtmBridgedPvc& pvc);

// Reads a text of records. A value missing from a record is that of the record before it. An address that
// does not have the form of one is kept as it converts; of a VCI, read as the nearest 32-bit number, the low
// 16 bits are kept; lines on tvlog say so and name the list `name`.
void parseList(std::string_view text, std::string_view name, std::vector<AtmRoutedPvc>& list);
void parseList(std::string_view text, std::string_view name, std::vector<AtmBridgedPvc>& list);
void parseList(std::string_view text, std::string_view name, std::vector<esiSelector>& list);

// The whole text of a list file.
template <class Entry> std::string listText(const std::vector<Entry>& list);
