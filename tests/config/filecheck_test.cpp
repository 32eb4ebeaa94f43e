// Findings about files, with their places: a good configuration and one fault after the other in it.
#include "config/filecheck.h"

#include "config/driverpdf.h"
#include "tests/support/temproot.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

using testing::ElementsAreArray;

namespace {

constexpr const char* file = PdfEdit::parameterFile;
constexpr const char* good = "# one adapter\n"                                                 // line 1
                             "[Adapter0\n"                                                     // 2
                             "[Signalling0\n"                                                  // 3
                             "NetPrefix=470999000000000000a03e0101\n"                          // 4
                             "UniRev=31\n"                                                     // 5
                             "AddressRegistration=1\n"                                         // 6
                             "PortChangeDetect=1\n"                                            // 7
                             "RegDiffNetPrefix=0\n"                                            // 8
                             "]\n"                                                             // 9
                             "[LEC0\n"                                                         // 10
                             "Enabled=1\n"                                                     // 11
                             "Config=0\n"                                                      // 12
                             "Mfs=1\n"                                                         // 13
                             "L3Mtu=1500\n"                                                    // 14
                             "ElanType=0\n"                                                    // 15
                             "Lecs=1\n"                                                        // 16
                             "ElanName=office\n"                                               // 17
                             "AtmPrefix=47007900000000000000000000\n"                          // 18
                             "AtmEsiSel=00a03e00000100\n"                                      // 19
                             "PvcConfFile=/etc/atm/pvcs\n"                                     // 20
                             "]\n"                                                             // 21
                             "[LES0\n"                                                         // 22
                             "Enabled=1\n"                                                     // 23
                             "Mfs=1\n"                                                         // 24
                             "MfsStrict=0\n"                                                   // 25
                             "ElanNameStrict=0\n"                                              // 26
                             "ElanName=office\n"                                               // 27
                             "ElanType=1\n"                                                    // 28
                             "ElanTbl=/etc/atm/clients\n"                                      // 29
                             "]\n"                                                             // 30
                             "[IP15770\n"                                                      // 31
                             "AtmPrefix=00000000000000000000000000\n"                          // 32
                             "AtmEsiSel=00000000000000\n"                                      // 33
                             "Enabled=0\n"                                                     // 34
                             "Config=0\n"                                                      // 35
                             "ServerIPAddress=10.0.0.1\n"                                      // 36
                             "ServerIPMask=255.0.0.0\n"                                        // 37
                             "IPAddress=10.0.0.2\n"                                            // 38
                             "PvcConfFile=\n"                                                  // 39
                             "]\n"                                                             // 40
                             "]\n";                                                            // 41
constexpr const char* pvcs = "[PVC\nVC=100\nAddr=00204000a101\nEncap=1\nBcast=0\nRate=1\n]\n"  // lines 1 to 7
                             "[PVC\nVC=101\nAddr=00204000a102\nEncap=1\nBcast=0\nRate=1\n]\n";  // 8 to 14
constexpr const char* clients = "00a03e000001/00\n00a03e000002/00\n";

// "117 adapter1/lec1.mtu tvconf:13"
std::vector<std::string> found() {
    AtmDevices devices;
    DriverPdfEdit editor(nullptr, false, devices);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(editor.ReadPdf());
    std::vector<std::string> lines;
    for (const PlacedFinding& placed : CheckFiles(editor.files(), devices)) {
        const Finding& finding = placed.finding;
        EXPECT_NE(finding.message, "");
        const bool warning = finding.number == 2 || (finding.number >= 105 && finding.number <= 107) ||
                             finding.number == 112 || finding.number == 115 || finding.number == 116 ||
                             finding.number == 201;
        EXPECT_EQ(finding.severity, warning ? Severity::warning : Severity::error) << finding.number;
        const std::string adapter = placed.adapter < 0 ? "" : fmt::format("adapter{}/", placed.adapter + 1);
        lines.push_back(fmt::format("{} {}{} {}:{}", finding.number, adapter, finding.path,
                                    placed.file.substr(placed.file.rfind('/') + 1), placed.line));
    }
    testing::internal::GetCapturedStdout();
    return lines;
}

struct Case {
    std::string from, to;               // in the file
    std::vector<std::string> expected;  // findings
};

struct FileCheck : testing::Test {
    TempRoot root;

    FileCheck() {
        root.write("/etc/atm/pvcs", pvcs);
        root.write("/etc/atm/clients", clients);
    }
    void expect(const char* edited, const char* text, const std::vector<Case>& cases) {
        for (const Case& one : cases) {
            SCOPED_TRACE(one.from + " -> " + one.to);
            root.write(file, good);
            root.write(edited, text);
            root.edit(edited, one.from, one.to);
            EXPECT_THAT(found(), ElementsAreArray(one.expected));
        }
    }
};

}  // namespace

TEST_F(FileCheck, NothingIsWrongWithAGoodOne) {
    root.write(file, good);
    EXPECT_THAT(found(), testing::IsEmpty());
}

TEST_F(FileCheck, KeysAndValues) {
    const std::string x30(30, 'x'), x70(70, 'x');
    expect(
        file, good,
        {{"Config=0\nMfs", "Mfs", {"116 adapter1/lec1.pvcOnly tvconf:10"}},
         {"ElanTbl=/etc/atm/clients\n", "", {"116 adapter1/les1.clientFile tvconf:22"}},
         {"UniRev=31", "UniRev=0", {"117 adapter1/signalling.uniRevision tvconf:5"}},
         {"UniRev=31", "UniRev=", {"117 adapter1/signalling.uniRevision tvconf:5"}},
         {"Mfs=1\nL3", "Mfs=5\nL3", {"117 adapter1/lec1.mtu tvconf:13"}},
         {"Mfs=1\nL3", "Mfs=99999999999999999999\nL3", {"117 adapter1/lec1.mtu tvconf:13"}},
         {"L3Mtu=1500",
          "L3Mtu=40000",
          {"117 adapter1/lec1.l3Mtu tvconf:14", "201 adapter1/lec1.l3Mtu tvconf:14"}},
         {"L3Mtu=1500", "L3Mtu=+1500", {}},
         {"L3Mtu=1500", "L3Mtu=-1", {"117 adapter1/lec1.l3Mtu tvconf:14"}},
         {"L3Mtu=1500", "L3Mtu=15oo", {"117 adapter1/lec1.l3Mtu tvconf:14"}},
         {"L3Mtu=1500", "L3Mtu=0", {"1 adapter1/lec1.l3Mtu tvconf:14"}},
         {"Lecs=1", "Lecs=2", {"117 adapter1/lec1.useLecs tvconf:16"}},
         {"ElanType=0", "ElanType=2", {"117 adapter1/lec1.elanType tvconf:15"}},
         {"ElanName=office\nAtm", "ElanName=" + x30 + "\nAtm", {}},
         {"ElanName=office\nAtm", "ElanName=" + x30 + "x\nAtm", {"112 adapter1/lec1.elanName tvconf:17"}},
         {"ElanName=office\nAtm", "ElanName=of{fice\nAtm", {"117 adapter1/lec1.elanName tvconf:17"}},
         {"ElanName=office\nAtm", "ElanName=\nAtm", {"2 adapter1/lec1.elanName tvconf:17"}},
         {"AtmEsiSel=00a03e00000100", "AtmEsiSel=00a03e000001", {"117 adapter1/lec1.esiSelector tvconf:19"}},
         {"NetPrefix=47", "NetPrefix=4700", {"117 adapter1/signalling.networkPrefix tvconf:4"}},
         {"/etc/atm/pvcs", "/etc/atm/" + x70, {"117 adapter1/lec1.pvcFile tvconf:20"}},
         // Of what is off only whether it is.
         {"Enabled=0\nConfig=0", "Enabled=0\nConfig=7", {}},
         {"Enabled=0", "Enabled=no", {"117 adapter1/ip.enabled tvconf:34"}},
         {"Enabled=0\n", "", {"116 adapter1/ip.enabled tvconf:31"}},
         {"Enabled=0", "Enabled=1", {}}});
}

TEST_F(FileCheck, SectionsThatAreNotRead) {
    const std::string longComment = "#" + std::string(140, ' ') + "[\nConfig=0\nMfs";
    std::string many;
    for (int i = 0; i < 400; ++i) many += "# filling\n";
    expect(file, good,
           {{"Config=0\nMfs=1\nL3", many + "Mfs=9\nL3", {"119 adapter1/lec1 tvconf:10"}},
            {"L3Mtu=1500", std::string("L3Mtu=0") + '\0', {"119 adapter1/lec1 tvconf:10"}},
            // A bracket is missing, or too many.
            {"]\n[LES0",
             "[LES0",
             {"119 adapter1/ tvconf:2", "119 adapter1/les1 tvconf:21", "119 adapter1/ip tvconf:30"}},
            {"]\n[IP15770", "]\n]\n[IP15770", {"119 /IP15770 tvconf:32"}},
            {"]\n]\n", "", {"119 adapter1/ip tvconf:31"}},
            {"[LES0", "[LEC = 0", {"119 adapter1/lec1 tvconf:22"}},
            {"[LES0", "[LEC4", {"119 /Adapter0/LEC4 tvconf:22"}},
            {"[LES0", "[LES 0 0", {"119 /IP15770 tvconf:31", "119 adapter1/ tvconf:22"}},
            {"[Adapter0", "[Adapter4", {"119 /Adapter4 tvconf:2"}},
            {"]\n]\n", "]\n[Adapter1\n]\n]\n", {"119 adapter2/ tvconf:41"}},
            // Of a long line the part behind 127 characters is read as one of its own.
            {"Config=0\nMfs",
             longComment,
             {"119 adapter1/ tvconf:2", "119 adapter1/lec1 tvconf:12", "119 adapter1/les1 tvconf:23",
              "119 adapter1/ip tvconf:32"}}});
    root.write(file, "\0garbage [ without ] an adapter");
    EXPECT_THAT(found(), ElementsAreArray({"119 / tvconf:1"}));
}

TEST_F(FileCheck, Lists) {
    expect("/etc/atm/pvcs", pvcs,
           {{"VC=101", "VC=5", {"3 adapter1/lec1.pvcs[1] pvcs:8"}},
            {"VC=101", "VC=70000", {"117 adapter1/lec1.pvcs[1] pvcs:8"}},
            {"VC=101", "VC=100", {"101 adapter1/lec1.pvcs[1] pvcs:8"}},
            {"Encap=1", "Encap=7", {"117 adapter1/lec1.pvcs[0] pvcs:1"}},
            {"Rate=1", "Rate=-1", {"117 adapter1/lec1.pvcs[0] pvcs:1"}},
            {"Rate=1\n]\n[PVC\nVC=101", "Rate=1\n[PVC\nVC=101", {}},
            {"Rate=1\n]\n[PVC\nVC=101\nAddr=00204000a102\nEncap=1\nBcast=0\nRate=1\n]\n",
             "Rate=1\n]\n[PVC\nVC",
             {"118 adapter1/lec1.pvcFile pvcs:9"}},
            {"Addr=00204000a101", "Addr=10.0.0.1", {"118 adapter1/lec1.pvcFile pvcs:1"}},
            {"[PVC", "# my own\n[PVC", {}}});
    root.write("/etc/atm/pvcs", pvcs);
    expect("/etc/atm/clients", clients,
           {{"2/00", "2", {"118 adapter1/les1.clientFile clients:2"}},
            {"00a03e000001/00", "[PVC", {"118 adapter1/les1.clientFile clients:1"}}});
    root.write(file, good);
    std::filesystem::remove(root.at("/etc/atm/clients"));
    EXPECT_THAT(found(), testing::IsEmpty());
    std::filesystem::create_directory(root.at("/etc/atm/clients"));
    EXPECT_THAT(found(), ElementsAreArray({"118 adapter1/les1.clientFile clients:1"}));
}
