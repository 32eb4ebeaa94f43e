#include "config/filecheck.h"

#include "config/defaultnames.h"
#include "config/listform.h"
#include "config/parametertext.h"
#include "config/pdf_internal.h"
#include "config/pdfedit.h"
#include "config/recordrows.h"
#include "config/valuerules.h"
#include "platform/index.h"
#include "platform/safetext.h"

#include <cstring>
#include <fmt/format.h>
#include <map>
#include <set>

using platform::escaped;

namespace {

constexpr Severity error = Severity::error;

// Calls visit(name, section, record) for each service of an adapter: "lec2", "/Adapter0/LEC1".
template <class Visit> void forEachSection(int adapter, const AtmDevices& devices, Visit visit) {
    const std::size_t a = asIndex(adapter);
    visit("signalling", sectionPath(adapter, "Signalling0"), devices.sig[a]);
    for (int m = 0; m < lecCount; ++m)
        visit(fmt::format("lec{}", m + 1), sectionPath(adapter, "LEC", m), devices.lec[a][asIndex(m)]);
    for (int m = 0; m < lesCount; ++m)
        visit(fmt::format("les{}", m + 1), sectionPath(adapter, "LES", m), devices.les[a][asIndex(m)]);
    visit("lecs", sectionPath(adapter, "LECS0"), devices.lecs[a]);
    visit("ip", sectionPath(adapter, "IP15770"), devices.ip1577[a]);
}

// Of a section path.
std::string_view lastName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

// Whether a section has the name of an adapter or a service, whatever its number.
bool isOurs(std::string_view name) {
    for (const std::string_view kind : {"Adapter", "Signalling", "LECS", "LEC", "LES", "IP1577"})
        if (name.size() > kind.size() && name.starts_with(kind) &&
            name.find_first_not_of("0123456789", kind.size()) == name.npos)
            return true;
    return false;
}

template <class Record> RawValue valueOf(const KeyRow<Record>& row, const ParameterText::Word* word) {
    RawValue value;
    value.there = word != nullptr;
    if (word) value.text = word->text;
    value.codes = row.codes;
    value.most = row.most;
    const auto misfit = [](char c) { return c < '!' || c > 'z'; };
    value.readable = asIndex(std::ranges::find_if(value.text, misfit) - value.text.begin());
    value.readable = std::min(value.readable, keyValueLimit);
    if (row.readType == keyString) value.readable = std::min(value.readable, asIndex(row.readLength) - 1);
    std::visit(Overloaded{
                   [&](std::int32_t Record::*) { value.kind = RawValue::Kind::number; },
                   [&](ElanName Record::*) { value.kind = RawValue::Kind::name; },
                   [&](const AddressField<Record>& field) {
                       value.kind = RawValue::Kind::address;
                       value.digits = field.half == addressPrefix
                                          ? atmAddress::prefixDigits
                                          : atmAddress::digitCount - atmAddress::prefixDigits;
                   },
                   [](const auto&) {},
               },
               row.field);
    return value;
}

// What the range of a PVC's numbers is, as far as the number alone tells.
template <class Pvc> std::string entryComplaint(const Pvc& pvc) {
    if (pvc.encapsulation != 0 && pvc.encapsulation != 1)
        return fmt::format("Encapsulation {} means nothing: 0 = Null, 1 = LLC", pvc.encapsulation);
    if (pvc.broadcast != 0 && pvc.broadcast != 1)
        return fmt::format("Broadcast {} is neither 0 nor 1", pvc.broadcast);
    return pvc.rate < 0 ? fmt::format("Rate {} is below 0", pvc.rate) : "";
}
std::string entryComplaint(const esiSelector&) {
    return {};
}

class FileCheck {
  public:
    FileCheck(ConfigFiles& files, const AtmDevices& devices)
        : files_(files), devices_(devices), text_(files.now(PdfEdit::parameterFile)) {}

    std::vector<PlacedFinding> run() {
        structure();
        for (int adapter = 0; adapter < adapterCount; ++adapter) {
            forEachSection(adapter, devices_, [&](const auto& name, const auto& section, const auto& record) {
                this->section(adapter, name, section, record);
            });
            for (Finding& finding : CheckAdapter(AdapterRecords(devices_, adapter)))
                add(adapter, std::move(finding));
        }
        return ordered();
    }

  private:
    static constexpr const char* parameterFile = PdfEdit::parameterFile;

    // "lec2.pvcs[0]"
    static std::string serviceOf(const std::string& path) { return path.substr(0, path.find('.')); }

    // Of what can be there a million times the first is enough.
    void structure() {
        std::set<std::string, std::less<>> misplaced, seen;
        const std::vector<SectionOpening> openings = text_.openings();
        bool any = false;
        const SectionOpening* unclosed = nullptr;
        for (const SectionOpening& opening : openings) {
            if (opening.path.empty()) {
                addSection(opening.parent, opening, "The name of a section in it cannot be read");
                continue;
            }
            if (lastName(opening.path).empty())
                addSection(opening.parent, opening, "A section in it has no name");
            if (!opening.closed) unclosed = &opening;
            const bool known = isKnown(opening.path);
            any |= known;
            const bool isNew = seen.insert(opening.path).second;
            if (misplaced.contains(opening.parent)) {
                misplaced.insert(opening.path);
            } else if (!known && isOurs(lastName(opening.path))) {
                misplaced.insert(opening.path);
                addSection(opening.path, opening, "The section is out of reach: " + whyMisplaced(opening));
            } else if (known && !isNew && !opening.parent.empty()) {
                addSection(opening.path, opening, "The section is out of reach: it is there before");
            }
        }
        if (unclosed) addSection(unclosed->path, *unclosed, "The section is not closed");
        if (!any && found_.empty())
            found_.push_back(
                {-1, {119, error, "/", "There is no section of an adapter", ""}, parameterFile, 1});
    }

    std::string whyMisplaced(const SectionOpening& opening) {
        const bool adapter = lastName(opening.path).starts_with("Adapter");
        if (opening.parent.empty()) return adapter ? "there is no such adapter" : "it stands in no adapter";
        const bool inAdapter = opening.parent.rfind('/') == 0 && isKnown(opening.parent);
        if (!adapter && inAdapter) return "there is no such service";
        return fmt::format("it stands in {}", escaped(opening.parent));
    }

    bool isKnown(std::string_view path) {
        if (known_.empty())
            for (int adapter = 0; adapter < adapterCount; ++adapter) {
                known_.try_emplace(fmt::format("/Adapter{}", adapter), adapter, "");
                forEachSection(adapter, devices_, [&](const auto& name, const auto& section, const auto&) {
                    known_.try_emplace(section, adapter, name);
                });
            }
        return known_.contains(path);
    }

    // What a section that is out of reach was meant for: that of its own name in the adapter that is named
    // last.
    void addSection(const std::string& path, const SectionOpening& opening, std::string message) {
        if (!said_.insert(path).second) return;
        const std::size_t adapterAt = path.rfind("/Adapter");
        std::string meant;
        if (adapterAt != path.npos) {
            meant = path.substr(adapterAt);
            if (const std::size_t name = meant.find('/', 1); name != meant.npos)
                meant = meant.substr(0, name) + '/' + std::string(lastName(path));
        }
        PlacedFinding placed{-1,
                             {119, error, path.empty() ? "/" : escaped(path), std::move(message), ""},
                             parameterFile,
                             text_.lineAt(opening.at)};
        if (isKnown(meant)) std::tie(placed.adapter, placed.finding.path) = known_.find(meant)->second;
        found_.push_back(std::move(placed));
    }

    template <class Record>
    void section(int adapter, const std::string& name, const std::string& section, const Record& record) {
        bool enabled = true;
        if constexpr (requires { record.enabled; }) enabled = record.enabled != 0;
        const int begin = text_.sectionLine(section);
        if (text_.open(section)) {
            if (const int fault = text_.dataError()) {
                const std::string message =
                    fault == EILSEQ ? "The section is not read: it holds a NUL byte"
                                    : fmt::format("The section is not read: it has more than {} characters",
                                                  sectionDataSize - 1);
                found_.push_back({adapter, {119, error, name, message, ""}, parameterFile, begin});
                return;
            }
            values<Record>(adapter, name, begin, enabled);
        }
        if constexpr (requires { record.pvcs; }) {
            if (enabled) list(adapter, name + ".pvcs", name + ".pvcFile", record.pvcFile.str(), record.pvcs);
        } else if constexpr (requires { record.clients; }) {
            if (enabled)
                list(adapter, name + ".clients", name + ".clientFile", record.clientFile.str(),
                     record.clients);
        }
    }

    template <class Record> void values(int adapter, const std::string& name, int begin, bool enabled) {
        for (const KeyRow<Record>& row : keyRows<Record>()) {
            if (!enabled && std::string_view(row.name) != "enabled") continue;
            const ParameterText::Word* word = text_.word(row.key);
            std::optional<Finding> finding = CheckValue(valueOf(row, word));
            if (!finding) continue;
            if (!word) finding->message += fmt::format(": {}", row.key);
            finding->path = fmt::format("{}.{}", name, row.name);
            found_.push_back({adapter, std::move(*finding), parameterFile, word ? word->line : begin});
        }
    }

    template <class List>
    void list(int adapter, const std::string& path, const std::string& setting, const std::string& file,
              const List& entries) {
        if (file.empty()) return;
        const auto say = [&](int number, const std::string& where, std::string message, int line) {
            found_.push_back({adapter, {number, error, where, std::move(message), ""}, file, line});
        };
        const std::string& text = files_.now(file);
        if (const int fault = files_.read(file).error; fault && text.empty())
            return say(118, setting, fmt::format("The list cannot be read: {}", std::strerror(fault)), 1);
        const ListForm form = listForm(text, entries);
        if (!form.isList) return say(118, setting, "The file is no list of this kind", 1);
        const std::vector<int>& lines = linesOf(file, entries);
        for (const ListFault& fault : form.faults)
            if (fault.record < lines.size())
                say(117, fmt::format("{}[{}]", path, fault.record),
                    fmt::format("A value in this entry is {}", fault.fault), lines[fault.record]);
        for (std::size_t i = 0; i < entries.size(); ++i)
            if (std::string complaint = entryComplaint(entries[i]); !complaint.empty())
                say(117, fmt::format("{}[{}]", path, i), std::move(complaint), lineOf(lines, i));
        if (form.cut)
            say(118, setting, "The list is cut: its last entry is not whole",
                1 + static_cast<int>(std::count(text.begin(), text.end() - 1, '\n')));
    }

    static int lineOf(const std::vector<int>& lines, std::size_t entry) {
        return entry < lines.size() ? lines[entry] : 1;
    }

    template <class List> const std::vector<int>& linesOf(const std::string& file, const List& kind) {
        const auto [lines, isNew] = lines_.try_emplace(file);
        if (isNew) lines->second = entryLines(files_.now(file), kind);
        return lines->second;
    }

    // A finding about a value, with its place: that of the entry, or of the setting.
    void add(int adapter, Finding finding) {
        PlacedFinding placed{adapter, std::move(finding), parameterFile, 1};
        const std::string& path = placed.finding.path;
        const std::string key = path.substr(path.find('.') + 1);
        forEachSection(adapter, devices_, [&](const auto& name, const auto& section, const auto& record) {
            if (name != serviceOf(path)) return;
            using Record = std::remove_cvref_t<decltype(record)>;
            const std::size_t bracket = key.find('[');
            if (bracket != key.npos) {
                const std::size_t entry = std::stoul(key.substr(bracket + 1));
                if constexpr (requires { record.pvcs; }) {
                    placed.file = record.pvcFile.str();
                    placed.line = lineOf(linesOf(placed.file, record.pvcs), entry);
                } else if constexpr (requires { record.clients; }) {
                    placed.file = record.clientFile.str();
                    placed.line = lineOf(linesOf(placed.file, record.clients), entry);
                }
                if (!placed.file.empty()) return;
                placed.file = parameterFile;
            }
            // A list stands for the file that holds it.
            const KeyRow<Record>* found = nullptr;
            for (const KeyRow<Record>& row : keyRows<Record>())
                if (key == row.name || (!found && std::holds_alternative<FileField<Record>>(row.field)))
                    found = &row;
            placed.line = found ? text_.keyLine(section, found->key) : text_.sectionLine(section);
        });
        found_.push_back(std::move(placed));
    }

    std::vector<PlacedFinding> ordered() {
        std::set<std::pair<int, std::string>> unread;
        for (const PlacedFinding& placed : found_)
            if (placed.finding.number == 119) unread.emplace(placed.adapter, placed.finding.path);
        std::erase_if(found_, [&](const PlacedFinding& placed) {
            return placed.finding.number != 119 &&
                   unread.contains({placed.adapter, serviceOf(placed.finding.path)});
        });
        std::map<std::pair<int, std::string>, int> order;
        for (int adapter = 0; adapter < adapterCount; ++adapter)
            forEachSection(adapter, devices_, [&](const auto& name, const auto&, const auto&) {
                order.try_emplace({adapter, name}, static_cast<int>(order.size()) + 1);
            });
        const auto rank = [&](const PlacedFinding& placed) {
            const auto place = order.find({placed.adapter, serviceOf(placed.finding.path)});
            return std::pair(placed.adapter, place == order.end() ? 0 : place->second);
        };
        std::ranges::stable_sort(found_, {}, rank);
        return std::move(found_);
    }

    ConfigFiles& files_;
    const AtmDevices& devices_;
    ParameterText text_;
    std::vector<PlacedFinding> found_;
    std::set<std::string> said_;                     // sections that something is said of
    std::map<std::string, std::vector<int>> lines_;  // of list files, by name
    std::map<std::string, std::pair<int, std::string>, std::less<>> known_;  // sections
};

}  // namespace

std::vector<PlacedFinding> CheckFiles(ConfigFiles& files, const AtmDevices& devices) {
    return FileCheck(files, devices).run();
}
