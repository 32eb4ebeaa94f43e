// Reads and writes records along the key tables, and the list files.
#include "config/driverpdf.h"

#include "config/defaultnames.h"
#include "config/pvcfile.h"
#include "config/recordrows.h"
#include "platform/debuglog.h"
#include "platform/index.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <utility>

namespace {

bool isAdapter(int adapter) {
    return adapter >= 0 && adapter < adapterCount;
}

std::string reasonFor(int error, const std::string& path) {
    if (error == ESRCH) return fmt::format("the section {} is missing", path.substr(0, path.rfind('/')));
    if (error == EINVAL) return fmt::format("the section {} cannot be added", path);
    if (error == EFBIG) return fmt::format("the section {} is too long", path);
    if (error == EILSEQ) return fmt::format("the section {} holds a NUL byte", path);
    return std::strerror(error);
}

// What stands there is a directory, a pipe or the like.
bool isNoFile(int error) {
    return error == EISDIR || error == EINVAL || error == ENXIO;
}

// A client whose list file has no name, which its section keeps as it is.
template <class Record> bool isUnnamed(const KeyRow<Record>& row, const Record& record) {
    const auto* file = std::get_if<FileField<Record>>(&row.field);
    return file && (record.*file->name).empty();
}

// Of a file with its links followed. The folder may be a link itself.
bool leadsOutside(const std::string& place) {
    platform::HostPath any;
    if (platform::files().resolve(platform::hostPath("/etc/atm/any"), any) != 0) return true;
    return !place.starts_with(platform::directoryOf(any).text + '/');
}

// Clients have a PVC file, which gets a name when it has none.
template <class Record> constexpr bool hasPvcs = requires(Record record) {
    record.pvcs;
};

}  // namespace

DriverPdfEdit::DriverPdfEdit(ErrorReporter reporter, bool showErrors, AtmDevices& devices,
                             std::shared_ptr<ReadCache> known)
    : PdfEdit(std::move(reporter), showErrors), devices_(devices), known_(std::move(known)) {}

template <class Record> bool DriverPdfEdit::readRecord(const std::string& path, Record& record) {
    const bool isNew = record == Record{};
    auto& known = parameters().sections<Record>();
    if (const auto section = known.find(path); isNew && section != known.end()) {
        record = section->second.record;
        return true;
    }
    if (!OpenKey(path, 0, false)) {
        if (errno != ESRCH) readError_ = errno;
        unknownSections_.insert(path);
        return false;
    }
    const bool faulty = section_->dataError != 0;
    if (faulty) unknownSections_.insert(path);
    const auto present = readRows(*section_, record, [&](const KeyRow<Record>& row, void* destination) {
        return QueryValue(row.key, destination, row.readType, row.readLength, true);
    });
    if (isNew && !faulty) known[path] = {record, present};
    return true;
}

ReadParameters& DriverPdfEdit::parameters() {
    ReadParameters& known = known_->parameters;
    if (parametersChecked_) return known;
    parametersChecked_ = true;
    const std::string hash = hashOf(files_.now(parameterFile));
    if (known.hash != hash) known = {};
    known.hash = hash;
    return known;
}

// Without a file that can be read the engine tries to open it, and complains.
SectionHandle* DriverPdfEdit::open(std::string_view sectionPath, std::uint32_t flags) {
    const FileAsRead& file = files_.read(parameterFile);
    if (!file.exists || file.error) {
        const int error = file.exists ? file.error : ENOENT;
        if (SectionHandle* handle = OpenSection(parameterFile, sectionPath, 0)) CloseSection(handle);
        errno = error;
        return nullptr;
    }
    ReadParameters& known = parameters();
    if (flags & sectionForWriting) known.hash.clear();
    return OpenSection(files_.text(parameterFile), known.index, parameterFile, sectionPath, flags);
}

bool DriverPdfEdit::mayWrite() {
    if (readError_ == 0) return true;
    addFailure({.file = parameterFile, .reason = std::strerror(readError_), .unknown = true});
    return false;
}

void DriverPdfEdit::clearOutcomes() {
    clearOutcome();
    dropped_.clear();
    lacking_.clear();
    places_.clear();
}

template <class Record> bool DriverPdfEdit::setField(const KeyRow<Record>& row, const Record& record) {
    const auto setText = [&](std::string_view value) {
        std::string text(value);
        return SetValue(row.key, text.data(), keyString, static_cast<int>(text.size()) + 1, true);
    };
    const auto set = Overloaded{
        [&](std::int32_t Record::*field) {
            std::int32_t number = record.*field;
            return SetValue(row.key, &number, keyLong, sizeof number, true);
        },
        [&](const AddressField<Record>& field) {
            const std::string_view digits = (record.*field.address).digits();
            return setText(field.half == addressPrefix ? digits.substr(0, atmAddress::prefixDigits)
                                                       : digits.substr(atmAddress::prefixDigits));
        },
        [&](const FileField<Record>& field) { return setText((record.*field.name).view()); },
        [&](auto field) { return setText((record.*field).view()); },
    };
    return std::visit(set, row.field);
}

// Whether the section has every key that is written, and all values of the record.
template <class Record> bool DriverPdfEdit::standsAsRead(const std::string& path, const Record& record) {
    const auto& sections = parameters().sections<Record>();
    const auto known = sections.find(path);
    if (known == sections.end()) return false;
    const auto& [was, present] = known->second;
    if constexpr (hasPvcs<Record>)
        if (record.pvcFile.empty() || record.pvcFile != was.pvcFile) return false;
    for (std::size_t i = 0; i < keyRows<Record>().size(); ++i) {
        const KeyRow<Record>& row = keyRows<Record>()[i];
        if (row.written && !(present[i] && sameField(row.field, was, record))) return false;
    }
    return true;
}

template <class Record>
bool DriverPdfEdit::writeRecord(const std::string& path, Record& record, const std::string& listFile) {
    if (!mayWrite()) return false;
    if (standsAsRead(path, record)) {
        tvlog << "Writing Values on - " << path << std::endl;
        return true;
    }
    parameters().sections<Record>().erase(path);
    if (!OpenKey(path, sectionForWriting, false) || section_->dataError) {
        const int error = section_ ? section_->dataError : errno;
        addFailure({parameterFile, reasonFor(error, path), error == ESRCH});
        return false;
    }
    tvlog << "Writing Values on - " << path << std::endl;
    Record before{};
    const auto present = readRows(*section_, before, [&](const KeyRow<Record>& row, void* destination) {
        return ReadKey(section_, row.key, destination, row.readType, row.readLength) == 0;
    });
    if constexpr (hasPvcs<Record>) {
        const auto fileRow = std::ranges::find_if(keyRows<Record>(), [](const KeyRow<Record>& row) {
            return std::holds_alternative<FileField<Record>>(row.field);
        });
        const auto index = asIndex(fileRow - keyRows<Record>().begin());
        const bool cut = present[index] && before.pvcFile.empty();
        if (record.pvcFile.empty() && !cut) {
            if (!before.pvcFile.empty())
                record.pvcFile = before.pvcFile;
            else if (isFree(listFile, record))
                record.pvcFile = listFile;
        }
    }
    bool good = true;
    for (std::size_t i = 0; i < keyRows<Record>().size(); ++i) {
        const KeyRow<Record>& row = keyRows<Record>()[i];
        if (!row.written) continue;
        if (stands(present, i, before, record) || isUnnamed(row, record)) {
            keepValue();
            continue;
        }
        if (setField(row, record) || errno == ENODATA) continue;
        if (errno == ENOENT) {
            lacking_.emplace(path, row.key);
            continue;
        }
        addFailure({parameterFile, fmt::format("the value of {} in {} cannot be stored", row.key, path)});
        good = false;
    }
    return good;
}

void DriverPdfEdit::readInterruptNumber(int adapter) {
    std::int32_t& number = devices_.interruptNumber[asIndex(adapter)];
    std::optional<std::int32_t>& known = parameters().interruptNumbers[asIndex(adapter)];
    if (known) {
        number = *known;
    } else if (!OpenKey(fmt::format("/Adapter{}", adapter), 0, false)) {
        if (errno != ESRCH) readError_ = errno;
    } else if (QueryValue("InterruptNumber", &number, keyLong, sizeof number, true) && !section_->dataError) {
        known = number;
    }
}

bool DriverPdfEdit::readAdapter(int adapter) {
    using Read = bool (DriverPdfEdit::*)(int);
    readInterruptNumber(adapter);
    for (const Read read : {&DriverPdfEdit::ReadSig, &DriverPdfEdit::ReadLECs, &DriverPdfEdit::ReadLESs,
                            &DriverPdfEdit::ReadLECS, &DriverPdfEdit::ReadIP1577})
        if (readError_ == 0) (this->*read)(adapter);
    return readError_ == 0;
}

void DriverPdfEdit::forget() {
    files_.clear();
    parametersChecked_ = false;
    unknownLists_.clear();
    unknownSections_.clear();
}

void DriverPdfEdit::replaceText(const std::string& name, const std::optional<std::string>& text) {
    CloseKey();
    if (text)
        files_.write(name, *text);
    else
        files_.remove(name);
    parametersChecked_ = false;
}

bool DriverPdfEdit::ReadPdf() {
    forget();
    readError_ = 0;
    for (int adapter = 0; adapter < adapterCount && readAdapter(adapter);) ++adapter;
    CloseKey();
    return readError_ == 0;
}

bool DriverPdfEdit::ReadLink(int adapter) {
    return ReadLinks({&adapter, 1});
}

bool DriverPdfEdit::ReadLinks(std::span<const int> adapters) {
    forget();
    return ReadTexts(adapters);
}

bool DriverPdfEdit::ReadTexts(std::span<const int> adapters) {
    readError_ = 0;
    unknownSections_.clear();
    for (const int adapter : adapters)
        if (readError_ == 0 && isAdapter(adapter)) readAdapter(adapter);
    CloseKey();
    return readError_ == 0;
}

bool DriverPdfEdit::ReadSig(int adapter) {
    return isAdapter(adapter) &&
           readRecord(sectionPath(adapter, "Signalling0"), devices_.sig[asIndex(adapter)]);
}

bool DriverPdfEdit::ReadLECs(int adapter) {
    bool good = isAdapter(adapter);
    for (int m = 0; isAdapter(adapter) && m < lecCount; ++m) {
        AtmLEC& lec = devices_.lec[asIndex(adapter)][asIndex(m)];
        if (readRecord(sectionPath(adapter, "LEC", m), lec))
            readList(lec.pvcFile.str(), lec.pvcs);
        else
            good = false;
    }
    return good;
}

bool DriverPdfEdit::ReadLESs(int adapter) {
    bool good = isAdapter(adapter);
    for (int m = 0; isAdapter(adapter) && m < lesCount; ++m) {
        AtmLES& les = devices_.les[asIndex(adapter)][asIndex(m)];
        if (readRecord(sectionPath(adapter, "LES", m), les))
            readList(les.clientFile.str(), les.clients);
        else
            good = false;
    }
    return good;
}

bool DriverPdfEdit::ReadLECS(int adapter) {
    return isAdapter(adapter) && readRecord(sectionPath(adapter, "LECS0"), devices_.lecs[asIndex(adapter)]);
}

bool DriverPdfEdit::ReadIP1577(int adapter) {
    if (!isAdapter(adapter)) return false;
    AtmIP1577& ip = devices_.ip1577[asIndex(adapter)];
    if (!readRecord(sectionPath(adapter, "IP15770"), ip)) return false;
    readList(ip.pvcFile.str(), ip.pvcs);
    return true;
}

bool DriverPdfEdit::WriteLink(int adapter) {
    return WriteLinks({&adapter, 1});
}

bool DriverPdfEdit::WriteLinks(std::span<const int> adapters) {
    clearOutcomes();
    for (const int adapter : adapters) {
        WriteSig(adapter);
        WriteLECs(adapter);
        WriteLESs(adapter);
        WriteLECS(adapter);
        WriteIP1577(adapter);
    }
    writeLists(adapters);
    return failures().empty();
}

bool DriverPdfEdit::WriteLists(std::span<const int> adapters) {
    clearOutcomes();
    writeLists(adapters);
    return failures().empty();
}

void DriverPdfEdit::writeLists(std::span<const int> adapters) {
    for (const int adapter : adapters) {
        WriteRoutedPVCs(adapter);
        WriteBridgedPVCs(adapter);
        WriteMappedClients(adapter);
    }
    ReadParameters& known = known_->parameters;
    if (CloseKey() && parametersChecked_ && known.hash.empty())
        known.hash = hashOf(files_.now(parameterFile));
}

bool DriverPdfEdit::WriteSig(int adapter) {
    return isAdapter(adapter) &&
           writeRecord(sectionPath(adapter, "Signalling0"), devices_.sig[asIndex(adapter)], "");
}

bool DriverPdfEdit::WriteLECs(int adapter) {
    bool good = isAdapter(adapter);
    for (int m = 0; isAdapter(adapter) && m < lecCount; ++m)
        good &= writeRecord(sectionPath(adapter, "LEC", m), devices_.lec[asIndex(adapter)][asIndex(m)],
                            lecPvcFile(adapter, m));
    return good;
}

bool DriverPdfEdit::WriteLESs(int adapter) {
    bool good = isAdapter(adapter);
    for (int m = 0; isAdapter(adapter) && m < lesCount; ++m)
        good &= writeRecord(sectionPath(adapter, "LES", m), devices_.les[asIndex(adapter)][asIndex(m)], "");
    return good;
}

bool DriverPdfEdit::WriteLECS(int adapter) {
    return isAdapter(adapter) &&
           writeRecord(sectionPath(adapter, "LECS0"), devices_.lecs[asIndex(adapter)], "");
}

bool DriverPdfEdit::WriteIP1577(int adapter) {
    return isAdapter(adapter) && writeRecord(sectionPath(adapter, "IP15770"),
                                             devices_.ip1577[asIndex(adapter)], ipPvcFile(adapter));
}

bool DriverPdfEdit::WriteRoutedPVCs(int adapter) {
    return isAdapter(adapter) &&
           writePvcs(sectionPath(adapter, "IP15770"), devices_.ip1577[asIndex(adapter)], ipPvcFile(adapter));
}

bool DriverPdfEdit::WriteBridgedPVCs(int adapter) {
    bool good = isAdapter(adapter);
    for (int m = 0; isAdapter(adapter) && m < lecCount; ++m)
        good &= writePvcs(sectionPath(adapter, "LEC", m), devices_.lec[asIndex(adapter)][asIndex(m)],
                          lecPvcFile(adapter, m));
    return good;
}

bool DriverPdfEdit::WriteMappedClients(int adapter) {
    bool good = isAdapter(adapter);
    for (int m = 0; isAdapter(adapter) && m < lesCount; ++m) {
        const AtmLES& les = devices_.les[asIndex(adapter)][asIndex(m)];
        if (!les.clientFile.empty())
            good &= writeList(les.clientFile.str(), les.clients);
        else if (!les.clients.empty())
            tvlog << "No ElanTbl For The Clients Of - " << sectionPath(adapter, "LES", m) << std::endl;
    }
    return good;
}

// As the text is now.
template <class List> const ReadList<List>& DriverPdfEdit::listIn(const std::string& name, const List&) {
    return known_->read<List>(name, files_.now(name));
}

template <class List> void DriverPdfEdit::readList(const std::string& name, List& list) {
    if (name.empty()) {
        list.clear();
        return;
    }
    const ReadList<List>& read = listIn(name, list);
    list = read.entries;
    if (files_.read(name).error || !read.form.isList) unknownLists_.insert(name);
}

// A list that stands there and is not named is nobody's: it is neither written nor removed, nor does it come
// into force by getting a name.
template <class Record> bool DriverPdfEdit::isFree(const std::string& listFile, const Record& record) {
    const FileAsRead& file = files_.read(listFile);
    if (!file.exists) return true;
    const ListForm& form = listIn(listFile, record.pvcs).form;
    return !file.error && form.isList && !form.hasEntry;
}

// Makes sure that the parameter file has the name of the PVC file. Only the default name may be missing
// there.
template <class Record>
bool DriverPdfEdit::pvcFileIsNamed(const std::string& path, Record& record, const std::string& listFile) {
    const auto stands = [&] {
        FileName name;
        return OpenKey(path, 0, false) &&
               ReadKey(section_, "PvcConfFile", name.data(), keyString, static_cast<int>(name.size)) == 0 &&
               name == record.pvcFile && !name.empty();
    };
    if (!record.pvcFile.empty() && record.pvcFile.view() != listFile) return true;
    if (standsAsRead(path, record) || stands()) return true;
    if (section_ && section_->valueCut) {
        addFailure({parameterFile, fmt::format("the name of a PVC file in {} is too long", path)});
        return false;
    }
    if (record.pvcFile.empty() && !isFree(listFile, record)) {
        addFailure({listFile, fmt::format("it is there already, and {} does not name it", path)});
        return false;
    }
    places_.clear();
    if (!writeRecord(path, record, listFile) || !CloseKey()) return false;
    if (stands()) return true;
    addFailure({parameterFile, fmt::format("{} cannot take the name of a PVC file", path)});
    return false;
}

template <class Record>
bool DriverPdfEdit::writePvcs(const std::string& path, Record& record, const std::string& listFile) {
    if (record.pvcs.empty()) return record.pvcFile.empty() || writeList(record.pvcFile.str(), record.pvcs);
    return pvcFileIsNamed(path, record, listFile) && writeList(record.pvcFile.str(), record.pvcs);
}

// The places of all list files that the parameter file names, in whatever section.
void DriverPdfEdit::readPlaces() {
    std::string_view rest = files_.text(parameterFile);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end);
        line = line.substr(0, line.find('#'));
        const std::size_t key = std::min(line.find("PvcConfFile"), line.find("ElanTbl"));
        const std::size_t equals = key == line.npos ? key : line.find('=', key);
        if (equals == std::string_view::npos) continue;
        const std::size_t from = line.find_first_not_of(" \t\r\n", equals + 1);
        if (from == std::string_view::npos) continue;
        platform::HostPath place =
            platform::hostPath(line.substr(from, line.find_first_of(" \t\r\n", from) - from));
        platform::files().resolve(place, place);
        places_.insert(place.text);
    }
}

// Why a file may not be replaced or removed as a list of this kind; empty: it may.
template <class List> std::string DriverPdfEdit::whyNoList(const std::string& name, const List&) {
    const FileAsRead& file = files_.read(name);
    if (file.error) return isNoFile(file.error) ? "it is not a regular file" : std::strerror(file.error);
    const ListForm& form = known_->read<List>(name, file.content).form;
    if (!form.isList) return "it is not a list of this kind";
    const std::string& place = files_.place(name).text;
    if (place.empty()) return "its directory is missing";
    const bool outside = isOutside(name) || (!file.content.empty() && leadsOutside(place));
    if (outside && !form.hasEntry) return "it is not a list, and not in /etc/atm";
    const std::string_view last = std::string_view(place).substr(place.rfind('/') + 1);
    if (last.starts_with(".tarvolin-save") || (last.starts_with('.') && last.find(".tv") != last.npos))
        return "it is a file of the program's own";
    if (place.find_first_of("\t\n") != place.npos) return "a character in its name is not allowed";
    if (place == files_.place(parameterFile).text) return "it is the parameter file";
    if (places_.empty()) readPlaces();
    if (places_.count(place) > 1) return "the parameter file names it more than once";
    return {};
}

template <class List> bool DriverPdfEdit::writeList(const std::string& name, const List& list) {
    if (!mayWrite()) return false;
    if (listIn(name, list).entries == list) return true;
    if (const std::string reason = whyNoList(name, list); !reason.empty()) {
        const int error = files_.read(name).error;
        addFailure({.file = name, .reason = reason, .unknown = error != 0 && !isNoFile(error)});
        return false;
    }
    for (const std::string& what : known_->read<List>(name, files_.read(name).content).form.dropped)
        dropped_.push_back(fmt::format("{} had {}, which is not kept.", name, what));
    if (list.empty()) {
        files_.remove(name);
    } else {
        std::string text = listText(list);
        known_->note(name, text, list);
        files_.write(name, std::move(text));
    }
    return true;
}
