// The driver's parameter file and its list files as the configuration records.
//
// Reading: records of missing sections and fields of missing or empty keys keep their defaults. Writing: in
// an existing section only existing keys are written; a missing section is created if its adapter's section
// exists. Unchanged values keep their spelling, including what could not be read of them; a list file that
// already holds the list is not written.
#pragma once

#include "config/pdfedit.h"
#include "model/tvdatbuf.h"

#include <map>

template <class Record> struct KeyRow;  // keytable.h

class DriverPdfEdit : public PdfEdit {
  public:
    DriverPdfEdit(ErrorReporter reporter, bool showErrors, AtmDevices& devices = atmDevices);

    // Reads everything of all adapters, once at start-up. False when the file could not be read; the
    // remaining records keep their values, and nothing is written until reading succeeds.
    bool ReadPdf();

    // Writes everything of one adapter (0 to 3) except its interrupt number, and commits it. False when
    // something could not be saved. failures(), onlySectionsMissing() and wroteAnything() then tell of this
    // call.
    bool WriteLink(int adapter);

    // Only the list files, after a cancelled dialog. Otherwise as WriteLink.
    bool WriteLists(int adapter);

    // One kind of record. False when a section is not there (Read...) or when something could not be saved
    // (Write..., but a section is committed only when the next one is opened or CloseKey is called).
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
    // the default name, also in the parameter file; the ELAN clients of a server without a file name are not
    // saved. False when something could not be saved.
    bool WriteRoutedPVCs(int adapter);
    bool WriteBridgedPVCs(int adapter);
    bool WriteMappedClients(int adapter);

  private:
    template <class Record> bool readRecord(const std::string& path, Record& record);
    template <class Record> bool setField(const KeyRow<Record>& row, const Record& record);
    template <class Record>
    bool writeRecord(const std::string& path, Record& record, const std::string& listFile);
    template <class Record>
    bool writePvcs(const std::string& path, Record& record, const std::string& listFile);
    template <class Record>
    bool pvcFileIsNamed(const std::string& path, Record& record, const std::string& listFile);
    template <class List> void readList(const std::string& name, List& list);
    template <class List> bool writeList(const std::string& name, const List& list);
    void writeLists(int adapter);
    bool mayWrite();

    AtmDevices& devices_;
    int readError_ = 0;                  // errno of a failed ReadPdf, after which nothing is written
    std::map<std::string, int> unread_;  // list files that exist but could not be read, and the errno
};
