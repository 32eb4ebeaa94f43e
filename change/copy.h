// Copies that stand beside a file until they take its place.
#pragma once

#include "platform/files.h"
#include "platform/openfile.h"

#include <string>
#include <string_view>

// The name of this process's copy of a file: ".tvconf.tv4d2", or ".tvconf.old.tv4d2" of its old content. In
// place of the end of a very long name it has the hash of the whole.
enum class CopyOf { newContent, oldContent };
std::string copyName(const platform::HostPath& place, CopyOf which = CopyOf::newContent);

// A copy with the content of the file that it is made like can keep its times, so that the time of a file
// remains that of its last edit when a save changes nothing.
enum class Times { now, kept };

// Makes that copy with the given content and brings it to the disk, though not its name. It takes the
// attributes of `file`; without one it is a new file, readable by all that the user's mask and the directory
// allow. 0, or -1 and errno; no copy is left then.
int makeCopy(const platform::HostPath& place, CopyOf which, std::string_view content,
             const platform::OpenFile& file, Times times = Times::now);

// Removes the copies in a directory whose process is gone, those of saves or those of the section engine, and
// says so on the log. To be called under the lock, when this process has none.
enum class CopiesOf { saves, engine };
void removeDeadCopies(const platform::HostPath& directory, CopiesOf whose);
