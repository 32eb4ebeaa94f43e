// The section file engine: reads and edits a text file of nested, named sections one section at a time.
//
//     [Adapter0                       # a comment runs to the end of the line
//             InterruptNumber = 11
//             [LEC0
//                     Enabled = 1
//             ]
//     ]
//
// A section is addressed by its path ("/Adapter0/LEC0"). OpenSection loads its key lines into the handle,
// ReadKey and WriteKey work on them there, CloseSection writes a complete new copy of the file and renames it
// over the file: after any failure the file is either the old or the new one. The engine does not know what
// keys mean.
//
// Every complaint is one line on standard output; none stops the program.
// Functions that fail leave a reason in errno. One thread; one handle for writing at a time.
//
// A text in memory can stand in place of the file. CloseSection then edits the text, and nothing reaches the
// disk: a caller that changes several sections brings them there together.
#pragma once

#include "model/fixedtext.h"
#include "platform/stream.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Takes the lines that the engine prints, with their ends; without it they go to standard output.
inline std::function<void(const std::string& line)> engineOutput;

constexpr std::uint32_t sectionCookie = 0xDEADBEEF;
// Characters of a line with its end; longer ones come in pieces.
constexpr std::size_t sectionLineLimit = 127;
constexpr std::size_t sectionDataSize = 3556;  // the data area with its terminating zero
constexpr std::size_t keyValueLimit = 63;      // characters of a value that can be read back

constexpr std::uint32_t sectionForWriting = 1;  // flag of OpenSection, and bit of rflg
constexpr std::uint32_t sectionCreated = 2;     // bit of rflg: CreateSection made it

enum KeyType {
    keyInt8 = 1,    // decimal
    keyInt16 = 2,   // decimal
    keyInt32 = 3,   // decimal
    keyLong = 4,    // decimal, 32 bits
    keyBytes = 5,   // len bytes as hexadecimal digit pairs
    keyString = 6,  // at most len - 1 characters
    keyIp = 7,      // dotted IPv4 address, 4 bytes in network order
};

// Where the sections of a text are, so that the text is searched once and not for every section. Filled by
// the first OpenSection. Whoever changes the text otherwise empties the index.
struct SectionIndex {
    struct Place {
        std::size_t at;  // behind the line that opens the section
        int nest, line;  // of SectionHandle, when the scan is there
    };
    std::map<std::string, Place, std::less<>> places;
    bool filled = false;
};

struct SectionHandle {
    std::uint32_t cookie = sectionCookie;
    platform::Stream rfd;  // the file
    platform::Stream wfd;  // the copy that will replace it; null when reading
    std::uint32_t rflg = 0;
    int wflg = 0;                                      // keys written; 0: nothing to commit
    int nest = 0;                                      // depth reached by the scan
    int line = 0;                                      // lines read so far
    FixedText<128> rfn;                                // name of the file
    FixedText<128> wfn;                                // name of the copy, for messages
    FixedText<128> section;                            // path reached by the scan
    std::array<char, sectionLineLimit + 1> linebuf{};  // the last line read; it may hold NUL bytes
    FixedText<sectionDataSize> data;                   // the key lines and the line that ended them

    std::array<char, 8192> block;  // read from the file, about a third of it at a time
    std::string_view ahead;        // unread rest of the block

    std::size_t lineLength = 0;    // of linebuf
    int ioError = 0;               // errno of the first read or copy that failed; nothing is committed then
    int dataError = 0;             // why the data was not loaded: EFBIG too long, EILSEQ a NUL byte
    bool valueCut = false;         // the last value read was longer than ReadKey could return
    platform::HostPath target;     // the file with symbolic links followed; when writing
    platform::HostPath temporary;  // the copy, from the moment that it exists
    bool copying = false;          // what is read goes to the copy

    std::string* text = nullptr;    // in place of the file
    SectionIndex* index = nullptr;  // of the text
    std::size_t dataAt = 0;         // where the text has the data, unless the section was created
    std::size_t dataLength = 0;     // of them there
    std::string textCopy;           // in place of the copy, for a section that is created

    std::string_view lineText() const { return {linebuf.data(), lineLength}; }
};

// Opens the file and loads the section. `flags`: 0, or sectionForWriting, with which a missing section is
// made inside its parent. Null: errno is ESRCH when there is no such section and no parent for it, EINVAL
// when its parent's layout has no place for a new section, otherwise that of the failed call. A failed open
// leaves no copy behind.
SectionHandle* OpenSection(std::string_view fileName, std::string_view sectionPath, std::uint32_t flags);

// The same on a text; it and its index must outlive the handle. `fileName` is for messages.
SectionHandle* OpenSection(std::string& text, SectionIndex& index, std::string_view fileName,
                           std::string_view sectionPath, std::uint32_t flags);

// 0: value stored. 1: the value is empty, destination untouched. -1: no such key (ENOENT) or no such type
// (EINVAL). Numbers go to 1, 2, 4 and 4 bytes, whatever `len`; bytes and strings to at most `len`, strings
// padded with zeros. For a value that is cut a line is printed, and valueCut is set.
int ReadKey(SectionHandle* handle, std::string_view key, void* destination, int type, int len);

// Replaces the value in the section's data, or adds a line in a section that was created by this handle. 0,
// or -1 with the data as it was and errno:
//   ENOENT    the section has no such key (silent: an existing section only gets existing keys)
//   ENODATA   no text to write; in a created section the line with an empty value is added all the same
//   EINVAL    the text could not be read back, would hide another key, or is empty and a word follows; or the
//             old value holds a bracket
//   EMSGSIZE  the line would no longer be read in one piece
//   EFBIG     the data area would overrun, also in place of ENOENT when the section was too long to load
//   EILSEQ    in place of ENOENT when the section was not loaded because of a NUL byte
// For strings the byte source[len - 1] is set to zero. An empty text over an empty value changes nothing.
int WriteKey(SectionHandle* handle, std::string_view key, void* source, int type, int len);

// Commits if a key was written, otherwise discards; frees the handle. 0, or -1 and errno when a commit
// failed: the file is as it was, except when only its directory could not be synced. The copy takes the
// owner, mode, ACL and other attributes of the file; when one cannot be given, nothing is committed. Null and
// closed handles are ignored.
int CloseSection(SectionHandle* handle);

// Closes every open handle without commit and removes the copies. For when the program has to end.
void AbandonSections();

// Every place of a text where a section is opened, in order, as the engine sees it.
struct SectionOpening {
    std::string path;     // empty: its name cannot be read, or makes the path too long
    std::string parent;   // path of the section around it, empty at the outermost level
    std::size_t at = 0;   // of its bracket in the text
    bool closed = false;  // before the end of the text
};
std::vector<SectionOpening> SectionOpenings(std::string& text);

// Steps of the above, for the engine and its tests.

// Makes a section as the last child of its parent. The handle is one that has scanned its file to the end.
// Null and errno as for OpenSection.
SectionHandle* CreateSection(SectionHandle* handle, std::string_view sectionPath);

// The first character of the key's value in data (which ends it at once when the value is empty), or null.
char* FindKey(SectionHandle* handle, std::string_view key);

void SectNameFwd(SectionHandle* handle, const char* bracket);  // `bracket` points at a '[' in linebuf
void SectNameRev(SectionHandle* handle);

// False at the end of the file and at a read error (ioError).
bool ReadSectLine(SectionHandle* handle);

// False at a read error only; a section that cannot be held is left empty with dataError.
bool ReadSectData(SectionHandle* handle);

// Writes the value's text, without a terminating zero, and returns its end. Room needed: 11 characters for
// numbers, 15 for addresses, 2 * len for bytes, len - 1 for strings.
char* WriteConvert(void* source, char* destination, int type, int len);

// Digit pairs into bytes, until a pair is not both hexadecimal or the destination is full. Returns the count.
int atox(std::string_view text, std::span<std::uint8_t> destination);
