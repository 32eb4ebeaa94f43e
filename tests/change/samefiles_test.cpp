// A save leaves the same bytes as editing the parameter file section by section, whatever its layout.
#include "change/adapterchange.h"

#include "randomconfig.h"
#include "tests/support/failingfiles.h"
#include "tests/support/simulator.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::map<std::string, std::string>;

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
    Texts get() const {
        Texts texts;
        for (const auto& entry : fs::directory_iterator(root.at("/etc/atm"))) {
            const std::string name = "/etc/atm/" + entry.path().filename().string();
            texts[name] = root.read(name);
        }
        return texts;
    }

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
    const std::string sample = root.read("/etc/atm/tvconf");
    int changed = 0;
    for (unsigned seed = 0; seed < 50; ++seed) {
        RandomConfig random(seed);
        const Texts before = random.files(sample);
        put(before);
        AtmDevices mine;
        Configuration configuration("tarvolin", mine);
        ASSERT_TRUE(configuration.read());
        const int adapter = random.below(adapterCount);
        const bool settings = !random.chance(4);
        configuration.readAgain(adapter);
        ChangeOrder order{.adapter = adapter, .settings = settings, .before = mine};
        random.change(mine, adapter, settings);
        const Texts expected = oldWay(adapter, settings, mine);
        put(before);
        AdapterChange change(configuration, std::move(order));
        EXPECT_FALSE(change.run());
        changed += change.result().wrote;
        ASSERT_EQ(get(), expected) << seed;
    }
    EXPECT_GT(changed, 30);
}
