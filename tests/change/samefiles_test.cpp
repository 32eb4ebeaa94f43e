// A save leaves the same bytes as editing the parameter file section by section, whatever its layout.
#include "change/adapterchange.h"
#include "tests/support/failingfiles.h"
#include "tests/support/simulator.h"

#include <random>

namespace fs = std::filesystem;

namespace {

constexpr const char* file = "/etc/atm/tvconf";
using Texts = std::map<std::string, std::string>;

// What people and older tools make of a parameter file, and what users make of its records. The same seed
// gives the same.
class Scribe {
  public:
    explicit Scribe(unsigned seed) : random_(seed) {}

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

    // Any layout, keys and sections missing, doubled and unknown ones in between.
    std::string rewritten(const std::string& orderly) {
        const std::string lineEnd = chance(8) ? "\r\n" : "\n";
        std::istringstream lines(orderly);
        std::string text;
        bool joins = false;  // a key may stand on the line of the one before
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("\t[")) joins = false;
            if (line.starts_with("\t[") && chance(7)) {  // the whole section
                while (std::getline(lines, line) && line != "\t]") {
                }
                continue;
            }
            if (line.starts_with("\t[") && chance(5)) line.insert(line.size() - 1, chance(2) ? " = " : "=");
            std::string end = (chance(8) ? " # [remark] = " + std::string(20, 'r') : "") + lineEnd;
            if (const std::size_t at = line.find("= "); line.starts_with('\t') && at != line.npos) {
                if (chance(9)) continue;
                static constexpr const char* equals[] = {"=", " = ", "\t\t= ", " =", "=   "};
                const std::string key = line.substr(0, line.find(' ')), rest = line.substr(at + 2);
                const std::size_t length = std::min(rest.find(' '), rest.size());
                const std::string value = spelled(rest.substr(0, length));
                const bool isList = value.starts_with('/');
                if (joins && chance(14)) text.replace(text.size() - lineEnd.size(), lineEnd.size(), " ");
                joins = !value.empty() && !isList;  // an empty value would become this key
                line = fmt::format("{}{}{}{}{}", chance(9) ? "  " : "", key, equals[below(5)], value,
                                   rest.substr(length));
                if (chance(20) && !isList) end += line + lineEnd;
                if (chance(20)) end += "Unknown = 7" + lineEnd;
            }
            if (chance(20)) end += "# " + std::string(below(9) ? 40 : 200, 'c') + lineEnd;
            text += line + end;
        }
        if (chance(3)) text += "[Other" + lineEnd + "Key = 1" + lineEnd + "]" + lineEnd;
        return text;
    }

    // Takes over settings, if they are changed, and changes lists, of one adapter.
    void change(AtmDevices& devices, const AtmDevices& wishes, std::size_t a, bool settings) {
        for (std::size_t m = 0; m < devices.lec[a].size(); ++m)
            take(devices.lec[a][m], wishes.lec[a][m], &AtmLEC::pvcFile, &AtmLEC::pvcs, settings);
        for (std::size_t m = 0; m < devices.les[a].size(); ++m)
            take(devices.les[a][m], wishes.les[a][m], &AtmLES::clientFile, &AtmLES::clients, settings);
        take(devices.ip1577[a], wishes.ip1577[a], &AtmIP1577::pvcFile, &AtmIP1577::pvcs, settings);
        if (!settings) return;
        devices.lecs[a] = wishes.lecs[a];
        devices.sig[a] = wishes.sig[a];
        devices.lec[a][0].elanName = chance(3) ? "two words" : "one";  // the first cannot be stored
    }

  private:
    std::string spelled(const std::string& value) {
        static constexpr const char* odd[] = {"", "01", "70000", "-1", "0x1", "7a"};
        if (value.starts_with('/')) return chance(4) ? "" : chance(3) ? value + "other" : value;
        if (chance(6)) return odd[below(6)];
        if (chance(8)) return std::string(static_cast<std::size_t>(below(50)), 'n');
        return chance(8) ? value.substr(0, value.size() / 2) : value;
    }
    template <class Record, class List>
    void take(Record& mine, const Record& wish, FileName Record::*name, List Record::*list, bool settings) {
        const FileName kept = mine.*name;  // the user does not name files
        List entries = mine.*list;
        if (chance(4)) entries.clear();
        if (chance(3)) entries.resize(entries.size() + 1 + random_() % 3);
        if (settings && chance(2)) mine = wish;
        mine.*name = kept;
        mine.*list = entries;
    }

    std::mt19937 random_;
};

// Commits every section to the file. Only the lists are texts.
class OnTheDisk : public DriverPdfEdit {
  public:
    explicit OnTheDisk(AtmDevices& devices) : DriverPdfEdit(nullptr, false, devices) {}

  protected:
    SectionHandle* open(std::string_view sectionPath, std::uint32_t flags) override {
        return PdfEdit::open(sectionPath, flags);
    }
};

struct SameFiles : testing::Test {
    SampleRoot root;
    FailingFiles files;

    SameFiles() { files.skipSyncs(); }

    void put(const Texts& texts) const {
        fs::remove_all(root.at("/etc/atm"));
        for (const auto& [name, text] : texts) root.write(name, text);
    }
    Texts get() const { return root.files("/etc/atm"); }

    Texts oldWay(int adapter, bool settings, const AtmDevices& devices) const {
        AtmDevices mine;
        OnTheDisk editor(mine);
        editor.ReadLink(adapter);
        mine = devices;
        settings ? editor.WriteLink(adapter) : editor.WriteLists(adapter);
        Texts texts = get();
        for (const auto& [name, text] : editor.files().edits())
            if (text)
                texts[name] = *text;
            else
                texts.erase(name);
        return texts;
    }
};

}  // namespace

TEST_F(SameFiles, OfRandomConfigurations) {
    const Texts sample = get();
    int changed = 0;
    for (unsigned seed = 0; seed < 50; ++seed) {
        Scribe scribe(seed);
        AtmDevices wishes, mine;
        root.write(file, scribe.rewritten(sample.at(file)));
        ASSERT_TRUE(DriverPdfEdit(nullptr, false, wishes).ReadPdf());
        Texts before = sample;
        before[file] = scribe.rewritten(sample.at(file));
        put(before);
        Configuration configuration("tarvolin", mine);
        ASSERT_TRUE(configuration.read());
        const int adapter = scribe.below(adapterCount);
        const bool settings = !scribe.chance(4);
        configuration.readAgain(adapter);
        ChangeOrder order{.adapters = {adapter}, .settings = settings, .before = mine};
        scribe.change(mine, wishes, static_cast<std::size_t>(adapter), settings);
        const Texts expected = oldWay(adapter, settings, mine);
        put(before);
        AdapterChange change(configuration, std::move(order));
        EXPECT_FALSE(change.run());
        changed += change.result().wrote;
        ASSERT_EQ(get(), expected) << seed;
    }
    EXPECT_GT(changed, 30);
}
