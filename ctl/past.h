// The changes so far, as commands name them.
#pragma once

#include "change/pastchanges.h"

#include <string>
#include <vector>

// Failure::usage: the text is no number. One that is too large for any change is 0.
unsigned readChangeNumber(const std::string& text);

// Newest first. Failure::wrongValue: the history cannot be read. `damaged` as readPastChanges() has it.
std::vector<PastChange> allChanges(std::vector<unsigned>* damaged = nullptr);

// Failure::notThere, besides that of readChangeNumber().
const PastChange& findChange(const std::string& text, const std::vector<PastChange>& changes);

// The files before a change. Failure::changedMeanwhile: one is not as the last change left it.
// Failure::wrongValue: one cannot be read, or the history lacks a later change.
std::vector<PastFile> filesBeforeChange(const PastChange& change, const std::vector<PastChange>& changes);
