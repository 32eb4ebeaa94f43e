// A configuration, or a part of one, as a JSON document in the form of "show --json".
#pragma once

#include "ctl/tree.h"
#include "model/tvdatbuf.h"

#include <string_view>

constexpr std::size_t largestDocument = 64UL << 20U;  // bytes

// The text as JSON: an object with "format" 1, in which no key stands twice. Failure::wrongValue.
Json readDocument(std::string_view text);

// What the document mentions takes the place of what the records have; a list that it mentions is the whole
// list. What is for reading only is not looked at. Failure::wrongValue for what show would not print, about
// its path; the records are of no use then.
void applyDocument(const Json& document, AtmDevices& devices);

// A file's text, or that of standard input for "-". Failure::wrongValue: it cannot be read, or is too large.
std::string readDocumentFile(const std::string& file);
