// Each request that changes the driver, refused, unanswered and cut off: what the box says, what the file has
// and what the driver runs.
#include "tests/e2e/configurationtest.h"

namespace {

enum Way { refused, unanswered, cutOff };

struct Fault {
    const char *name, *fault, *last;  // `last`: the box's last sentence about the driver
};
constexpr Fault faults[] = {
    {"Refused", "every resp 9", ""},
    // The call fails as after a wait of 15 seconds, which MainWindowTest has.
    {"Unanswered", "every errno ETIME", "Nothing more was sent after a request without an answer."},
    {"CutOff", "every hangup", "The driver was lost. Nothing more was sent."},
};

// As if done on a page of Setup.
struct Change {
    std::function<void()> make;
    const char* saved;    // the line that is new in the file
    const char* service;  // as the dump calls it
};
const Change lecName{[] { xferBuffer[0].elanName = "other"; }, "ElanName = other", "lec 1.1"},
    lecOff{[] { xferBuffer[1].enabled = 0; }, "Enabled = 0", "lec 1.2"},
    lesName{[] { lesXferBuffer[0].elanName = "other"; }, "ElanName = other", "les 1.1"},
    lesOff{[] { lesXferBuffer[0].enabled = 0; }, "Enabled = 0", "les 1.1"},
    lecsMtu{[] { lecsXferBuffer.etherMtuPosition = 2; }, "EtherMfs = 3", "lecs 1"},
    lecsOff{[] { lecsXferBuffer.enabled = 0; }, "Enabled = 0", "lecs 1"},
    ipPvcs{[] { ip1577XferBuffer.pvcOnly = 1; }, "Config = 1  # 1 = PVCs only, no ATMARP server", "ip 1"},
    ipOff{[] { ip1577XferBuffer.enabled = 0; }, "Enabled = 0", "ip 1"};

struct Case {
    const char* request;
    const Change& change;
    std::string refused, unanswered;
    // What the driver has of the service when it has not carried the request out (empty: what it had before),
    // and when it has.
    std::string without, with;
};

// What is said of each client of the LECS.
std::string ofClients(const std::string& first, const std::string& others) {
    std::string text;
    for (const char* client :
         {"00:a0:3e:00:00:01-00 of LES 1", "00:a0:3e:00:00:11-00 of LES 1", "00:20:40:00:c1:01-00 of LES 1",
          "00:20:40:00:c1:02-00 of LES 1", "00:20:40:00:c1:03-00 of LES 1", "00:a0:3e:00:00:02-00 of LES 2",
          "00:20:40:00:c2:01-00 of LES 2"})
        text += std::string("Client ") + client + (text.empty() ? first : others);
    return text;
}
// The requests that follow a restart of the LECS that was refused.
std::string mappingsRefused(int resp) {
    const std::string text =
        fmt::format(" refused ({}). The LECS was not restarted and may have it already.", resp);
    return ofClients(text, text);
}
constexpr const char *lecsWithout = " refused (9): the LECS runs without it.",
                     *lecsOld = "LECS: restart refused (9). It is stopped, or runs with its old settings.",
                     *lecsSilent = "LECS: no answer to the restart. Whether it runs is unknown.",
                     *off = "enabled 0, 0 entries";

const Case cases[] = {
    {"lec.start", lecName,
     "LEC 1: restart refused (9). It runs with its old settings."
     "PVC 0 / 100 of LEC 1 refused (13). The client was not restarted and may have it already."
     "PVC 0 / 101 of LEC 1 refused (13). The client was not restarted and may have it already.",
     "LEC 1: no answer to the restart. What it runs with is unknown.", "",
     "enabled 1, elanName \"other\", pvcOnly 0, 0 entries"},
    {"lec.stop", lecOff, "LEC 2: stop refused (9). It still runs.",
     "LEC 2: no answer to the stop. Whether it still runs is unknown.", "", off},
    {"lec.pvc-add", lecName,
     "PVC 0 / 100 of LEC 1 refused (9): the client runs without it."
     "PVC 0 / 101 of LEC 1 refused (9): the client runs without it.",
     "PVC 0 / 100 of LEC 1: no answer. Whether the client has it is unknown."
     "PVC 0 / 101 of LEC 1 not sent: the client runs without it.",
     "enabled 1, elanName \"other\", pvcOnly 0, 0 entries",
     "enabled 1, elanName \"other\", pvcOnly 0, 1 entries"},
    {"les.stop", lesName, "LES 1: restart refused (9). It may run with its old settings.",
     "LES 1: no answer to the stop. Whether it still runs is unknown.", "", off},
    {"les.stop", lesOff, "LES 1: stop refused (9). It still runs.",
     "LES 1: no answer to the stop. Whether it still runs is unknown.", "", off},
    {"les.start", lesName, "LES 1: start refused (9). It is stopped.",
     "LES 1: no answer to the start. Whether it runs is unknown.", off,
     "enabled 1, elanName \"other\", 0 entries"},
    {"lecs.stop", lecsMtu, lecsOld + mappingsRefused(15), lecsSilent, "", off},
    {"lecs.load", lecsMtu, lecsOld + mappingsRefused(10), lecsSilent, off, off},
    {"lecs.go", lecsMtu, lecsOld, lecsSilent, off, "enabled 1, etherMtuClass 3, 0 entries"},
    {"lecs.map", lecsMtu, ofClients(lecsWithout, lecsWithout),
     ofClients(": no answer. Whether the LECS has it is unknown.", " not sent: the LECS runs without it."),
     "enabled 1, etherMtuClass 3, 0 entries", "enabled 1, etherMtuClass 3, 1 entries"},
    {"lecs.stop", lecsOff, "LECS: stop refused (9). It still runs.",
     "LECS: no answer to the stop. Whether it still runs is unknown.", "", off},
    {"ip.start", ipPvcs,
     "Classical IP: restart refused (9). It runs with its old settings."
     "PVC 0 / 120 of Classical IP refused (13). The client was not restarted and may have it already.",
     "Classical IP: no answer to the restart. What it runs with is unknown.", "",
     "enabled 1, pvcOnly 1, 0 entries"},
    {"ip.stop", ipOff, "Classical IP: stop refused (9). It still runs.",
     "Classical IP: no answer to the stop. Whether it still runs is unknown.", "", off},
    {"ip.pvc-add", ipPvcs, "PVC 0 / 120 of Classical IP refused (9): the client runs without it.",
     "PVC 0 / 120 of Classical IP: no answer. Whether the client has it is unknown.",
     "enabled 1, pvcOnly 1, 0 entries", "enabled 1, pvcOnly 1, 1 entries"},
};

// What a dump has of a service, in short, and everything else.
struct Running {
    std::string service, others;
};
Running running(const std::string& dump, const std::string& service) {
    Running found;
    int entries = 0;
    std::istringstream lines(dump);
    const std::string begin = "config " + service + ' ';
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(begin)) {
            found.others += line + '\n';
            continue;
        }
        const std::string rest = line.substr(begin.size());
        entries += rest.starts_with("pvc ") || rest.starts_with("mapping ");
        for (const char* key : {"enabled ", "elanName ", "etherMtuClass ", "pvcOnly "})
            if (rest.starts_with(key)) found.service += rest + ", ";
    }
    found.service += fmt::format("{} entries", entries);
    return found;
}

}  // namespace

class Refusals : public ConfigurationTest, public testing::WithParamInterface<Way> {};

TEST_P(Refusals, AreNamedAndTheFileHasTheChange) {
    const Fault& fault = faults[GetParam()];
    for (const Case& c : cases) {
        SCOPED_TRACE(c.request);
        startAfresh("1");
        const std::string file = root.read(parameterFile);
        const Running before = running(dump(), c.change.service);
        simulator->ctl(fmt::format("fault {} {}", c.request, fault.fault));
        expectBoxes({"Driver Error"}, [&] {
            c.change.make();
            press(okBTN);
        });
        EXPECT_EQ(boxText, fmt::format("The driver did not take everything:{}{}The file has the change.",
                                       GetParam() == refused ? c.refused : c.unanswered, fault.last));
        EXPECT_EQ(window->cursor(), zArrowCursor);
        const Running now = running(dump(), c.change.service);
        EXPECT_EQ(now.service, GetParam() == cutOff ? c.with
                               : c.without.empty()  ? before.service
                                                    : c.without);
        EXPECT_EQ(now.others, before.others);
        Names lines = differences(file, root.read(parameterFile));
        ASSERT_EQ(lines.size(), 2U);
        std::string& saved = lines[1];
        saved.erase(saved.find(' '), saved.find('=') - saved.find(' ') - 1);
        EXPECT_EQ(saved, fmt::format("+\t\t{}", c.change.saved));
    }
}

INSTANTIATE_TEST_SUITE_P(Each, Refusals, testing::Values(refused, unanswered, cutOff),
                         [](const auto& of) { return faults[of.param].name; });
