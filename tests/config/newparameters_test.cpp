// The text of a first parameter file, read and written again by the program's own editor.
#include "config/newparameters.h"

#include "config/defaultnames.h"
#include "config/driverpdf.h"
#include "tests/support/temproot.h"

namespace {

constexpr const char* file = PdfEdit::parameterFile;
const std::vector<int> all{0, 1, 2, 3};

bool everyName(const std::string&) {
    return true;
}

// The defaults, with the names of lists that the file gives.
AtmDevices expected(const std::vector<int>& adapters) {
    AtmDevices devices;
    for (const int a : adapters) {
        const auto at = static_cast<std::size_t>(a);
        devices.sig[at].uniRevision = 30;
        devices.ip1577[at].pvcFile = ipPvcFile(a);
        for (int m = 0; m < lecCount; ++m)
            devices.lec[at][static_cast<std::size_t>(m)].pvcFile = lecPvcFile(a, m);
        for (int m = 0; m < lesCount; ++m)
            devices.les[at][static_cast<std::size_t>(m)].clientFile = elanClientFile(a, m);
    }
    return devices;
}

void expectSame(const AtmDevices& a, const AtmDevices& b) {
    EXPECT_EQ(a.sig, b.sig);
    EXPECT_EQ(a.lec, b.lec);
    EXPECT_EQ(a.les, b.les);
    EXPECT_EQ(a.lecs, b.lecs);
    EXPECT_EQ(a.ip1577, b.ip1577);
    EXPECT_EQ(a.interruptNumber, b.interruptNumber);
}

struct NewParameters : testing::Test {
    TempRoot root;
    AtmDevices devices;
    DriverPdfEdit editor{nullptr, false, devices};

    // Without a complaint of the section engine.
    void quietly(const std::function<bool()>& action) {
        testing::internal::CaptureStdout();
        const bool good = action();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_TRUE(good);
    }
    void read() {
        devices = {};
        quietly([&] { return editor.ReadPdf(); });
    }
    void write(int adapter) {
        quietly([&] { return editor.WriteLink(adapter); });
        EXPECT_THAT(editor.failures(), testing::IsEmpty());
        EXPECT_THAT(editor.lacking(), testing::IsEmpty());
    }
};

}  // namespace

TEST_F(NewParameters, ReadAsTheDefaultsAndNeedNoChange) {
    root.write(file, newParameters(all, everyName));
    read();
    expectSame(devices, expected(all));
    EXPECT_THAT(editor.unknownSections(), testing::IsEmpty());
    EXPECT_THAT(editor.unknownLists(), testing::IsEmpty());
    for (const int a : all) write(a);
    EXPECT_EQ(editor.files().edits().size(), 0U);
    EXPECT_THAT(root.read(file), testing::HasSubstr("# ELAN Type: 0 = Ethernet, 1 = Token Ring\n"));
}

// A list that is there already would come into force with its name.
TEST_F(NewParameters, OnlyTheAdaptersThatAreThereAndOnlyFreeNames) {
    root.write(lecPvcFile(2, 1), "[PVC\nVC=100\nAddr=00a03e000001\nEncap=1\nBcast=0\nRate=0\n]\n");
    root.write(file,
               newParameters(std::vector{0, 2}, [&](const std::string& list) { return !root.exists(list); }));
    read();
    AtmDevices wanted = expected({0, 2});
    wanted.lec[2][1].pvcFile = "";
    expectSame(devices, wanted);
    EXPECT_EQ(editor.unknownSections().count("/Adapter1/LEC0"), 1U);
    write(2);
    EXPECT_EQ(editor.files().edits().size(), 0U);
}
