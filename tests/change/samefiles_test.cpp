// A save leaves the same bytes as editing the parameter file section by section, whatever its layout.
#include "change/adapterchange.h"
#include "tests/support/failingfiles.h"
#include "tests/support/scribe.h"
#include "tests/support/simulator.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* file = "/etc/atm/tvconf";
using Texts = std::map<std::string, std::string>;

// And what users make of its records.
class ScribeAndUser : public Scribe {
  public:
    using Scribe::Scribe;

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
    const unsigned seeds = std::getenv("TV_THOROUGH") ? 1000 : 50;
    for (unsigned seed = 0; seed < seeds; ++seed) {
        ScribeAndUser scribe(seed);
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
