// The driver's parameter file and its list files as the configuration records.
//
// Reading: records of missing sections and fields of missing or empty keys keep their defaults. Writing goes
// into texts (files()); whoever saves brings these to the disk. In an existing section only existing keys are
// written; a missing section is created if its adapter's section exists. Unchanged values keep their
// spelling, including what could not be read of them; a list file that already holds the list is not written.
#pragma once

#include "config/configfiles.h"
#include "config/pdfedit.h"
#include "config/readcache.h"
#include "model/tvdatbuf.h"

#include <memory>
#include <optional>
#include <set>
#include <span>

class DriverPdfEdit : public PdfEdit {
  public:
    // Editors that work one after the other can share what they know of the files.
    DriverPdfEdit(ErrorReporter reporter, bool showErrors, AtmDevices& devices = atmDevices,
                  std::shared_ptr<ReadCache> known = std::make_shared<ReadCache>());

    // Reads everything of all adapters, of one (0 to 3) or of some, from the disk. False when the parameter
    // file could not be read: the remaining records keep their values, and nothing is written until reading
    // succeeds.
    bool ReadPdf();
    bool ReadLink(int adapter);
    bool ReadLinks(std::span<const int> adapters);
    // The same of the texts as they are now.
    bool ReadTexts(std::span<const int> adapters);

    // Writes everything of one adapter except its interrupt number. False when something could not be stored;
    // failures() and onlySectionsMissing() then tell of this call.
    bool WriteLink(int adapter);
    // The same of several; the settings of all come before the lists.
    bool WriteLinks(std::span<const int> adapters);

    // Only the list files, after a cancelled dialog. Otherwise as WriteLinks.
    bool WriteLists(int adapter) { return WriteLists(std::span<const int>(&adapter, 1)); }
    bool WriteLists(std::span<const int> adapters);

    // The texts, as they were read and as they were written. Only the editor changes or clears them.
    ConfigFiles& files() { return files_; }
    // They are read again when they are needed.
    void forget();
    // Another text for a file, or none: the file goes.
    void replaceText(const std::string& name, const std::optional<std::string>& text);

    // What the last reading could not read: list files, of which the lists are empty then, and sections that
    // are missing or faulty, by their paths. Neither tells anything of what the configuration is.
    const std::set<std::string>& unknownLists() const { return unknownLists_; }
    const std::set<std::string>& unknownSections() const { return unknownSections_; }

    // What the last WriteLink or WriteLists drops that stood beside the entries of a list: a sentence each.
    const std::vector<std::string>& dropped() const { return dropped_; }
    // Keys that it could not add, since their sections lack them: "/Adapter0/LEC1", "L3Mtu".
    using Lacking = std::set<std::pair<std::string, std::string>>;
    const Lacking& lacking() const { return lacking_; }

    // One kind of record. False when a section is not there (Read...) or when something could not be saved
    // (Write..., but a section is committed to the text only when the next one is opened or CloseKey is
    // called).
    bool ReadSig(int adapter);
    bool ReadLECs(int adapter);
    bool ReadLESs(int adapter);
    bool ReadLECS(int adapter);
    bool ReadIP1577(int adapter);
    bool WriteSig(int adapter);
    bool WriteLECs(int adapter);
    bool WriteLESs(int adapter);
    bool WriteLECS(int adapter);
    bool WriteIP1577(int adapter);

    // The list files of one adapter. An empty list removes its file. A client with PVCs but no file name gets
    // the default name, also in the parameter file, unless a list has it already; the ELAN clients of a
    // server without a file name are not saved. False when something could not be saved.
    bool WriteRoutedPVCs(int adapter);
    bool WriteBridgedPVCs(int adapter);
    bool WriteMappedClients(int adapter);

  protected:
    SectionHandle* open(std::string_view sectionPath, std::uint32_t flags) override;

  private:
    void readInterruptNumber(int adapter);
    bool readAdapter(int adapter);
    template <class Record> bool readRecord(const std::string& path, Record& record);
    template <class Record> bool setField(const KeyRow<Record>& row, const Record& record);
    template <class Record>
    bool writeRecord(const std::string& path, Record& record, const std::string& listFile);
    template <class Record>
    bool writePvcs(const std::string& path, Record& record, const std::string& listFile);
    template <class Record>
    bool pvcFileIsNamed(const std::string& path, Record& record, const std::string& listFile);
    template <class Record> bool isFree(const std::string& listFile, const Record& record);
    template <class List> const ReadList<List>& listIn(const std::string& name, const List& kind);
    template <class List> void readList(const std::string& name, List& list);
    template <class List> bool writeList(const std::string& name, const List& list);
    template <class List> std::string whyNoList(const std::string& name, const List& list);
    void writeLists(std::span<const int> adapters);
    ReadParameters& parameters();
    template <class Record> bool standsAsRead(const std::string& path, const Record& record);
    bool mayWrite();
    void clearOutcomes();
    void readPlaces();

    AtmDevices& devices_;
    ConfigFiles files_;
    std::shared_ptr<ReadCache> known_;
    bool parametersChecked_ = false;  // known_ tells of their text
    int readError_ = 0;               // errno of a failed ReadPdf, after which nothing is written
    std::vector<std::string> dropped_;
    Lacking lacking_;
    std::set<std::string> unknownLists_, unknownSections_;
    std::multiset<std::string> places_;  // of all list files, when it is not empty
};
