// Configurations as people and older tools leave them: any layout, keys and sections missing, unknown ones in
// between; and changes of them as dialogs make them. The same seed gives the same.
#pragma once

#include "config/pvcfile.h"
#include "config/recordrows.h"

#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

class RandomConfig {
  public:
    explicit RandomConfig(unsigned seed) : random_(seed) {}

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

    // The contents of the files by name, the parameter file among them, made of an orderly parameter file.
    std::map<std::string, std::string> files(const std::string& orderly) {
        std::istringstream lines(orderly);
        lineEnd_ = chance(8) ? "\r\n" : "\n";
        std::string text = comment() + inner(parsed(lines, "").inner, 0);
        if (chance(3)) text += written({"Other", {"Key = 1"}, {}}, 0);
        if (chance(10)) text.pop_back();
        files_["/etc/atm/tvconf"] = text;
        return files_;
    }

    // Changes settings and lists of one adapter, or only its lists.
    void change(AtmDevices& devices, int adapter, bool settings) {
        const auto a = static_cast<std::size_t>(adapter);
        for (AtmLEC& lec : devices.lec[a]) changeRecord(lec, settings), changeList(lec.pvcs);
        for (AtmLES& les : devices.les[a]) changeRecord(les, settings), changeList(les.clients);
        changeRecord(devices.ip1577[a], settings), changeList(devices.ip1577[a].pvcs);
        changeRecord(devices.lecs[a], settings);
        changeRecord(devices.sig[a], settings);
    }

  private:
    struct Section {
        std::string name;
        std::vector<std::string> keys;  // "key = value"
        std::vector<Section> inner;
    };

    // What stands up to the end of a section.
    static Section parsed(std::istream& lines, const std::string& name) {
        Section section{name, {}, {}};
        std::string word, equals, value;
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line.substr(0, line.find('#')));
            if (!(words >> word)) continue;
            if (word[0] == ']') break;
            if (word[0] == '[') {
                section.inner.push_back(parsed(lines, word.substr(1)));
                continue;
            }
            value.clear();
            words >> equals >> value;
            section.keys.push_back(word + " = " + value);
        }
        return section;
    }

    std::string inner(const std::vector<Section>& sections, int depth) {
        std::string text;
        for (const Section& section : chance(2) ? shuffled(sections) : sections)
            if (!chance(7)) text += written(section, depth);
        return text;
    }

    std::string written(const Section& section, int depth) {
        const std::string margin = chance(3) ? std::string(static_cast<std::size_t>(below(9)), ' ')
                                             : std::string(static_cast<std::size_t>(depth), '\t');
        std::string title = section.name;
        if (chance(5)) title.insert(title.size() - 1, chance(2) ? " = " : "=");
        std::string text = margin + "[" + title + remark() + lineEnd_;
        for (std::string line : chance(3) ? shuffled(section.keys) : section.keys) {
            if (chance(9)) continue;
            static constexpr const char* forms[] = {"=", " = ", "\t\t= ", " =", "=   "};
            const std::size_t equals = line.find(" = ");
            const std::string value = oddValue(section.name, line.substr(equals + 3));
            line = line.substr(0, equals) + forms[below(5)] + value;
            const bool joined = chance(14) && !value.empty();  // a key would become the empty value
            text += (chance(9) ? "  " : margin + "\t") + line + remark() + (joined ? " " : lineEnd_);
            if (chance(12)) text += lineEnd_;
            if (chance(20)) text += comment();
            if (chance(20)) text += margin + "Unknown = " + std::to_string(below(99)) + lineEnd_;
        }
        if (!text.ends_with('\n')) text += lineEnd_;
        return text + inner(section.inner, depth + 1) + margin + "]" + remark() + lineEnd_;
    }

    // The value, perhaps another one, perhaps none. A list file gets entries.
    std::string oddValue(const std::string& section, std::string value) {
        static constexpr const char* odd[] = {"", "01", "70000", "-1", "0x1", "7a"};
        if (value.starts_with('/')) {
            if (chance(4)) return "";
            if (chance(3)) value += "other";
            std::string& text = files_[value];
            text = section.starts_with("LEC")   ? listText(list<AtmBridgedPvc>())
                   : section.starts_with("LES") ? listText(list<esiSelector>())
                                                : listText(list<AtmRoutedPvc>());
            if (text.empty()) files_.erase(value);
            return value;
        }
        if (chance(6)) return odd[below(6)];
        if (chance(8)) return std::string(static_cast<std::size_t>(below(50)), 'n');
        return chance(8) ? value.substr(0, value.size() / 2) : value;
    }
    std::string remark() { return chance(8) ? " # [remark] = " + std::string(20, 'r') : ""; }
    std::string comment() {
        return "# " + std::string(static_cast<std::size_t>(below(9) ? below(40) : 200), 'c') + lineEnd_;
    }

    template <class Entry> Entry entry() {
        Entry made{};
        if constexpr (requires { made.vci; }) {
            made.vci = static_cast<std::uint16_t>(32 + below(60));
            made.encapsulation = below(2);
            made.broadcast = below(2);
            made.rate = below(26);
        } else {
            made = esiSelector({0, 0xa0, 0x3e, 0, 0, static_cast<std::uint8_t>(below(200)), 0});
        }
        return made;
    }
    template <class Entry> std::vector<Entry> list() {
        std::vector<Entry> made;
        for (int count = chance(3) ? 0 : below(51); count > 0; --count) made.push_back(entry<Entry>());
        return made;
    }

    template <class Entry> void changeList(std::vector<Entry>& list) {
        if (!chance(3)) return;
        if (chance(4)) list.clear();
        for (int edits = below(4); edits > 0; --edits)
            if (list.empty() || chance(3))
                list.push_back(entry<Entry>());
            else if (const auto at = list.begin() + below(static_cast<int>(list.size())); chance(2))
                list.erase(at);
            else
                *at = entry<Entry>();
    }
    template <class Record> void changeRecord(Record& record, bool settings) {
        if (!settings || chance(2)) return;
        for (const KeyRow<Record>& row : keyRows<Record>())
            if (row.written && chance(4))
                std::visit([&](const auto& field) { changeField(record, field); }, row.field);
    }
    template <class Record> void changeField(Record& record, std::int32_t Record::*field) {
        record.*field = chance(9) ? below(100000) : below(4);
    }
    template <class Record, std::size_t size>
    void changeField(Record& record, FixedText<size> Record::*field) {
        static constexpr const char* texts[] = {"", "two words", "hash#", "[", "plain", "x=y"};
        record.*field = chance(4) ? texts[below(6)]
                                  : std::string(static_cast<std::size_t>(below(static_cast<int>(size))), 'y');
    }
    template <class Record> void changeField(Record& record, const AddressField<Record>& field) {
        std::string digits;
        for (int i = field.half == addressPrefix ? 26 : 14; i > 0; --i)
            digits += "0123456789abcdef"[below(16)];
        if (field.half == addressPrefix)
            (record.*field.address).setNetworkPrefix(digits);
        else
            (record.*field.address).setESISelector(digits);
    }
    template <class Field> void changeField(auto& /*record*/, const Field& /*a list's name stays*/) {}

    template <class T> std::vector<T> shuffled(std::vector<T> items) {
        for (std::size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[static_cast<std::size_t>(below(static_cast<int>(i)))]);
        return items;
    }

    std::mt19937 random_;
    std::string lineEnd_ = "\n";
    std::map<std::string, std::string> files_;
};
