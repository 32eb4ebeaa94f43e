// check: what it prints, how it ends, and what a document would make wrong.
#include "config/driverpdf.h"
#include "platform/user.h"
#include "run.h"
#include "tests/support/simulator.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace {

constexpr const char* file = PdfEdit::parameterFile;

void expect(const std::string& line, int status, const std::string& out, const std::string& err = "") {
    SCOPED_TRACE(line);
    const Ran ran = runTvctl(line);
    EXPECT_EQ(ran.status, status);
    EXPECT_EQ(ran.out, out);
    EXPECT_EQ(ran.err, err);
}

}  // namespace

TEST(Check, SaysNothingOfTheSampleAndOfAFirstFile) {
    const SampleRoot sample;
    expect("check", 0, "");
    expect("check --json", 0, "{\"format\":1,\"findings\":[]}\n");
    const TempRoot empty;
    expect("check", 9, "", "tvctl: /etc/atm/tvconf: No such file or directory\n");
    platform::pretendSuperUser(true);
    EXPECT_EQ(runTvctl("init").status, 0);
    platform::pretendSuperUser({});
    expect("check", 0, "");
}

TEST(Check, WarningsAloneEndWithOne) {
    const SampleRoot root;
    root.edit(file, "ElanName                = engineering", "ElanName                =");
    const std::string line =
        "/etc/atm/tvconf:34: warning 2: adapter1/lec1.elanName: This is an enabled client "
        "without an ELAN name\n";
    expect("check", 1, line);
    root.edit(file, "L3Mtu                   = 1500", "L3Mtu                   = 0");
    expect("check", 9,
           "/etc/atm/tvconf:31: error 1: adapter1/lec1.l3Mtu: L3 MTU 0: no packet fits into it\n" + line);
    EXPECT_EQ(runTvctl("check --json").json()["findings"][0], nlohmann::json::parse(R"({"number": 1,
        "severity": "error", "file": "/etc/atm/tvconf", "line": 31, "where": "adapter1/lec1.l3Mtu",
        "message": "L3 MTU 0: no packet fits into it"})"));
}

// The section engine has complaints of its own, which are no results.
TEST(Check, PrintsNothingElse) {
    const SampleRoot root;
    root.edit(file, "Enabled                 = 1", std::string("Enabled=1") + '\0');
    expect("check", 9,
           "/etc/atm/tvconf:27: error 119: adapter1/lec1: The section is not read: it holds a NUL "
           "byte\n");
    root.write(file, "[ no section\n");
    expect("check", 9, "/etc/atm/tvconf:1: error 119: /: The name of a section in it cannot be read\n");
    std::string garbage = root.read(file);
    for (int i = 0; i < 100'000; ++i) garbage += "[\0]]#\xff\n=[[LEC0 "[i * 7 % 15];
    root.write(file, garbage);
    EXPECT_EQ(runTvctl("check").status, 9);
}

// What a document brings has its name; what was wrong before stays where it is.
TEST(Check, OfADocument) {
    const SampleRoot root;
    const std::string document = root.at("/document").string();
    root.edit(file, "ElanName                = engineering", "ElanName                =");
    const std::string known = "/etc/atm/tvconf:34: warning 2: adapter1/lec1.elanName: This is an enabled "
                              "client without an ELAN name\n";
    const struct {
        const char* text;
        int status;
        std::string out;
    } cases[] = {
        {R"({"format": 1})", 1, known},
        {R"({"format": 1, "adapter1": {"lec1": {"elanName": "x"}}})", 0, ""},
        {R"({"format": 1, "adapter1": {"lec1": {"l3Mtu": 0, "pvcs": [{"mac": "00:20:40:00:a1:01", "vci": 16,
             "encapsulation": "llc", "broadcast": false, "rate": 1}]}}})",
         9,
         fmt::format("{}:1: error 1: adapter1/lec1.l3Mtu: L3 MTU 0: no packet fits into it\n{}"
                     "{}:1: error 3: adapter1/lec1.pvcs[0]: VCI 16 belongs to ILMI\n",
                     document, known, document)},
    };
    for (const auto& one : cases) {
        root.write("/document", one.text);
        const Ran ran = runTvctl("check " + document);
        EXPECT_EQ(ran.status, one.status) << one.text;
        EXPECT_EQ(ran.err, "");
        EXPECT_EQ(ran.out, one.out) << one.text;
    }
    EXPECT_EQ(root.temporaryCopies(), 0);
    root.write("/document", R"({"format": 1, "adapter1": {"lec1": {"l3Mtu": "wide"}}})");
    EXPECT_EQ(runTvctl("check " + document).status, 9);
    EXPECT_EQ(runTvctl("check " + document).out, "");
    EXPECT_EQ(runTvctl("check one two").status, 2);
}
