#include "change/merge.h"

#include "change/entrywords.h"
#include "change/listmerge.h"
#include "change/listmoves.h"
#include "config/recordrows.h"

#include <algorithm>

#include <type_traits>

namespace {

template <class Record> bool isFile(const KeyRow<Record>& row) {
    return std::holds_alternative<FileField<Record>>(row.field);
}

// Copies what the file holds of a field.
template <class Record> void copyField(const KeyField<Record>& field, const Record& from, Record& to) {
    std::visit(Overloaded{
                   [&](const AddressField<Record>& address) {
                       const std::string_view digits = (from.*address.address).digits();
                       if (address.half == addressPrefix)
                           (to.*address.address).setNetworkPrefix(digits.substr(0, atmAddress::prefixDigits));
                       else
                           (to.*address.address).setESISelector(digits.substr(atmAddress::prefixDigits));
                   },
                   [&](const FileField<Record>& file) {
                       if constexpr (hasList<Record>) to.*file.name = (from.*file.name).view();
                   },
                   [&](auto member) { to.*member = from.*member; },
               },
               field);
}

template <class Entry>
std::string sideText(const std::optional<Entry>& entry, const std::optional<Entry>& other) {
    return !entry ? "removed" : other ? entryDifferences(*entry, *other) : entryText(*entry);
}

// Until it is decided the file's side is taken.
bool decide(const std::string& line, const Decisions& decisions, Merge& merge) {
    const auto decision = decisions.find(Conflict{line});
    if (decision != decisions.end()) return decision->second;
    merge.conflicts.push_back({line});
    return false;
}

// Merges one service.
template <class Record> class ServiceMerge {
  public:
    ServiceMerge(const ServiceName& name, const Record& base, const Record& mine, const Record& theirs,
                 const Decisions& decisions, Merge& result)
        : name_(name), base_(base), mine_(mine), theirs_(theirs), decisions_(decisions), result_(result),
          merged_(theirs) {}

    Record run(bool settings) {
        for (const KeyRow<Record>& row : keyRows<Record>()) {
            if (!isFile(row)) mergeKey(row, settings);
        }
        if constexpr (hasList<Record>) {
            mergeFileName();
            mergeList();
        }
        if constexpr (requires { merged_.mac; }) merged_.mac = mine_.mac;
        return merged_;
    }

    bool givenUp() const { return changed_ > 0 && lost_ == changed_; }

  private:
    // The user cannot change it. One that was made up holds until the file has a name; one that others have
    // taken out is gone.
    void mergeFileName() {
        if (listFileOf(merged_).empty() && listFileOf(base_).empty())
            listFileOf(merged_) = listFileOf(mine_).view();
    }

    void mergeKey(const KeyRow<Record>& row, bool settings) {
        const bool changed = settings && !sameField(row.field, mine_, base_);
        const bool theyChanged = !sameField(row.field, theirs_, base_);
        const bool differ = !sameField(row.field, mine_, theirs_);
        changed_ += changed;
        if (!differ) copyField(row.field, mine_, merged_);  // perhaps another spelling
        if (changed && differ &&
            (!theyChanged || decide(fmt::format("{} {}: yours {}, in the file {}", name_.words, row.words,
                                                valueText(row, mine_, ValueForm::words),
                                                valueText(row, theirs_, ValueForm::words)))))
            copyField(row.field, mine_, merged_);
        else if (changed && differ)
            ++lost_;
        if (theyChanged && sameField(row.field, merged_, theirs_))
            result_.takenOver.push_back({name_.path + '.' + row.name, valueText(row, base_, ValueForm::name),
                                         valueText(row, theirs_, ValueForm::name)});
    }

    void mergeList() {
        using List = std::remove_pointer_t<decltype(listOf(merged_))>;
        using Entry = typename List::value_type;
        const List &base = *listOf(base_), &mine = *listOf(mine_), &theirs = *listOf(theirs_);
        *listOf(merged_) = mergeLists<Entry>(base, mine, theirs, [&](const EntryConflict<Entry>& conflict) {
            const std::string name = entryName(conflict.entry);
            const bool mineTaken = decide(fmt::format("{} {}: yours {}, in the file {}", name_.words, name,
                                                      sideText(conflict.mine, conflict.theirs),
                                                      sideText(conflict.theirs, conflict.mine)));
            if (!mineTaken) result_.entriesGivenUp.push_back({name_.words, name});
            return mineTaken;
        });
        if (theirs != base) {
            ListChange change{name_.path + '.' + listName<Record>, {}, {}};
            for (const Entry& entry : withoutThose(theirs, base)) change.added.push_back(entryWords(entry));
            for (const Entry& entry : withoutThose(base, theirs)) change.removed.push_back(entryWords(entry));
            result_.takenOverLists.push_back(std::move(change));
        }
    }

    bool decide(const std::string& line) { return ::decide(line, decisions_, result_); }

    const ServiceName& name_;
    const Record &base_, &mine_, &theirs_;
    const Decisions& decisions_;
    Merge& result_;
    Record merged_;
    int changed_ = 0, lost_ = 0;
};

// Takes an entry out of the list of one service, the last one of its key.
void takeOut(int adapter, std::size_t service, EntryKey key, AtmDevices& devices) {
    std::size_t place = 0;
    forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto) {
        auto& of = record(devices);
        if constexpr (hasList<std::remove_cvref_t<decltype(of)>>)
            if (place == service) {
                auto& list = *listOf(of);
                const auto last = std::find_if(list.rbegin(), list.rend(),
                                               [&](const auto& entry) { return entryKey(entry) == key; });
                if (last != list.rend()) list.erase(std::next(last).base());
            }
        ++place;
    });
}

// An entry that the sides have given to different lists is in both after these are merged.
void mergeMoves(int adapter, const std::vector<EntryMove>& moves, const Decisions& decisions, Merge& merge) {
    const auto wordsOf = [&](std::size_t service) -> const std::string& {
        return namedServices(adapter)[service].name.words;
    };
    for (const EntryMove& move : moves) {
        const auto fate = [&](const std::optional<std::size_t>& to) {
            return !to ? "removed" : (move.from ? "moved to " : "added to ") + wordsOf(*to);
        };
        const bool mine =
            decide(fmt::format("{}{}: yours {}, in the file {}", move.from ? wordsOf(*move.from) + ' ' : "",
                               move.name, fate(move.mine), fate(move.theirs)),
                   decisions, merge);
        if (const auto& loser = mine ? move.theirs : move.mine)
            takeOut(adapter, *loser, move.key, merge.devices);
        // The driver has it where the user wanted it; what was only removed it lacks where the others want
        // it.
        if (!mine)
            merge.entriesGivenUp.push_back({wordsOf(move.mine ? *move.mine : *move.theirs), move.name});
    }
}

}  // namespace

Merge mergeAdapters(std::span<const int> adapters, const AtmDevices& base, const AtmDevices& mine,
                    const AtmDevices& theirs, bool settings, const Decisions& decisions) {
    Merge merge;
    for (const int adapter : adapters) {
        forEachService(adapter, [&](const ServiceName& name, auto record, const std::string&, auto bit) {
            using Record = std::remove_cvref_t<decltype(record(merge.devices))>;
            ServiceMerge<Record> service(name, record(base), record(mine), record(theirs), decisions, merge);
            record(merge.devices) = service.run(settings);
            bit(merge.givenUp[asIndex(adapter)]) = service.givenUp();
        });
        mergeMoves(adapter, movedApart(base, mine, theirs, adapter), decisions, merge);
    }
    return merge;
}

void takeOver(int adapter, AtmDevices& base, AtmDevices& mine, const AtmDevices& theirs) {
    const std::set<std::size_t> entangled = entangledLists(base, mine, theirs, adapter);
    std::size_t service = 0;
    forEachService(adapter, [&](const ServiceName&, auto record, const std::string&, auto) {
        using Record = std::remove_cvref_t<decltype(record(mine))>;
        Record &was = record(base), &is = record(mine), file = record(theirs);
        for (const KeyRow<Record>& row : keyRows<Record>()) {
            if (!isFile(row) && !sameField(row.field, was, is) && !sameField(row.field, is, file)) continue;
            copyField(row.field, file, was);
            copyField(row.field, file, is);
        }
        if constexpr (hasList<Record>)
            if ((*listOf(was) == *listOf(is) || *listOf(is) == *listOf(file)) && !entangled.contains(service))
                *listOf(was) = *listOf(is) = *listOf(file);
        ++service;
    });
}

std::vector<KeyChange> keyChanges(std::span<const int> adapters, const AtmDevices& before,
                                  const AtmDevices& after) {
    std::vector<KeyChange> changes;
    forEachService(adapters, [&](const ServiceName& name, auto record, const std::string&, auto) {
        const auto &was = record(before), &is = record(after);
        for (const auto& row : keyRows<std::remove_cvref_t<decltype(was)>>()) {
            // To sameField() the name of a file never differs.
            if (!isFile(row) && sameField(row.field, was, is)) continue;
            const std::string from = valueText(row, was, ValueForm::name),
                              to = valueText(row, is, ValueForm::name);
            if (from != to) changes.push_back({name.path + '.' + row.name, from, to});
        }
    });
    return changes;
}

std::vector<ListChange> listChanges(std::span<const int> adapters, const AtmDevices& before,
                                    const AtmDevices& after) {
    std::vector<ListChange> changes;
    forEachService(adapters, [&](const ServiceName& name, auto record, const std::string&, auto) {
        const auto &was = record(before), &is = record(after);
        using Record = std::remove_cvref_t<decltype(was)>;
        if constexpr (hasList<Record>) {
            if (*listOf(was) == *listOf(is)) return;
            ListChange change{name.path + '.' + listName<Record>, {}, {}};
            for (const auto& entry : withoutThose(*listOf(is), *listOf(was)))
                change.added.push_back(entryWords(entry));
            for (const auto& entry : withoutThose(*listOf(was), *listOf(is)))
                change.removed.push_back(entryWords(entry));
            changes.push_back(std::move(change));
        }
    });
    return changes;
}
