// The steps of a save that replacing and recovering share. Inside this folder only.
#pragma once

#include "change/saverecord.h"

#include <span>

// Each 0, or -1 and errno.

// Renames the copy over the file, or removes the file.
int takeStep(const SaveStep& step);

// Writes a record and brings it to the disk; there must be none of this name. After a failure there is none.
int writeRecord(const platform::HostPath& record, std::span<const SaveStep> steps);

// Brings the directories of the files, and of the record if there is one, to the disk, each once.
int syncDirectories(std::span<const SaveStep> steps, const platform::HostPath* record);

// Removes the copies, as far as they are there.
void removeCopies(std::span<const SaveStep> steps);
