// Each request that changes the driver, refused, unanswered and cut off: what the box says, what the file has
// and what the driver runs.
#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/configurationtest.h"

namespace {

enum Way { refused, unanswered, cutOff };

struct Fault {
    const char *name, *fault, *last;  // `last`: the box's last sentence about the driver
};
constexpr Fault faults[] = {
    {"Refused", "every resp 9", ""},
    // The call fails as after a wait of 15 seconds, which another test has.
    {"Unanswered", "every errno ETIME", "Nothing more was sent after a request without an answer."},
    {"CutOff", "every hangup", "The driver was lost. Nothing more was sent."},
};

void nameOf(std::string& name) {
    name = "other";
}

struct Case {
    const char* request;
    std::function<void()> change;  // as if done on a page of Setup
    const char* saved;             // the line that is new in the file
    const char* service;           // as the dump calls it
    std::string refused, unanswered;
    const char* runs[3];  // what the driver has of the service then, by Way
};
// The requests that follow a restart of the LECS that was refused.
std::string mappingsRefused(int resp) {
    std::string text;
    for (const char* client :
         {"00:a0:3e:00:00:01-00 of LES 1", "00:a0:3e:00:00:11-00 of LES 1", "00:20:40:00:c1:01-00 of LES 1",
          "00:20:40:00:c1:02-00 of LES 1", "00:20:40:00:c1:03-00 of LES 1", "00:a0:3e:00:00:02-00 of LES 2",
          "00:20:40:00:c2:01-00 of LES 2"})
        text += fmt::format("Client {} refused ({}). The LECS was not restarted and may have it already.",
                            client, resp);
    return text;
}

const Case cases[] = {
    {"lec.start",
     [] { nameOf(xferBuffer[0].elanName); },
     "ElanName = other",
     "lec 1.1",
     "LEC 1: restart refused (9). It runs with its old settings."
     "PVC 0 / 100 of LEC 1 refused (13). The client was not restarted and may have it already."
     "PVC 0 / 101 of LEC 1 refused (13). The client was not restarted and may have it already.",
     "LEC 1: no answer to the restart. What it runs with is unknown.",
     {"enabled 1, elanName \"engineering\", pvcOnly 0, 2 entries",
      "enabled 1, elanName \"engineering\", pvcOnly 0, 2 entries",
      "enabled 1, elanName \"other\", pvcOnly 0, 0 entries"}},
    {"lec.stop",
     [] { xferBuffer[1].enabled = 0; },
     "Enabled = 0",
     "lec 1.2",
     "LEC 2: stop refused (9). It still runs.",
     "LEC 2: no answer to the stop. Whether it still runs is unknown.",
     {"enabled 1, elanName \"accounting\", pvcOnly 0, 0 entries",
      "enabled 1, elanName \"accounting\", pvcOnly 0, 0 entries", "enabled 0, 0 entries"}},
    {"lec.pvc-add",
     [] { nameOf(xferBuffer[0].elanName); },
     "ElanName = other",
     "lec 1.1",
     "PVC 0 / 100 of LEC 1 refused (9): the client runs without it."
     "PVC 0 / 101 of LEC 1 refused (9): the client runs without it.",
     "PVC 0 / 100 of LEC 1: no answer. Whether the client has it is unknown."
     "PVC 0 / 101 of LEC 1 not sent: the client runs without it.",
     {"enabled 1, elanName \"other\", pvcOnly 0, 0 entries",
      "enabled 1, elanName \"other\", pvcOnly 0, 0 entries",
      "enabled 1, elanName \"other\", pvcOnly 0, 1 entries"}},
    {"les.stop",
     [] { nameOf(lesXferBuffer[0].elanName); },
     "ElanName = other",
     "les 1.1",
     "LES 1: restart refused (9). It may run with its old settings.",
     "LES 1: no answer to the stop. Whether it still runs is unknown.",
     {"enabled 1, elanName \"engineering\", 0 entries", "enabled 1, elanName \"engineering\", 0 entries",
      "enabled 0, 0 entries"}},
    {"les.stop",
     [] { lesXferBuffer[0].enabled = 0; },
     "Enabled = 0",
     "les 1.1",
     "LES 1: stop refused (9). It still runs.",
     "LES 1: no answer to the stop. Whether it still runs is unknown.",
     {"enabled 1, elanName \"engineering\", 0 entries", "enabled 1, elanName \"engineering\", 0 entries",
      "enabled 0, 0 entries"}},
    {"les.start",
     [] { nameOf(lesXferBuffer[0].elanName); },
     "ElanName = other",
     "les 1.1",
     "LES 1: start refused (9). It is stopped.",
     "LES 1: no answer to the start. Whether it runs is unknown.",
     {"enabled 0, 0 entries", "enabled 0, 0 entries", "enabled 1, elanName \"other\", 0 entries"}},
    {"lecs.stop",
     [] { lecsXferBuffer.etherMtuPosition = 2; },
     "EtherMfs = 3",
     "lecs 1",
     "LECS: restart refused (9). It is stopped, or runs with its old settings." + mappingsRefused(15),
     "LECS: no answer to the restart. Whether it runs is unknown.",
     {"enabled 1, etherMtuClass 1, 7 entries", "enabled 1, etherMtuClass 1, 7 entries",
      "enabled 0, 0 entries"}},
    {"lecs.load",
     [] { lecsXferBuffer.etherMtuPosition = 2; },
     "EtherMfs = 3",
     "lecs 1",
     "LECS: restart refused (9). It is stopped, or runs with its old settings." + mappingsRefused(10),
     "LECS: no answer to the restart. Whether it runs is unknown.",
     {"enabled 0, 0 entries", "enabled 0, 0 entries", "enabled 0, 0 entries"}},
    {"lecs.go",
     [] { lecsXferBuffer.etherMtuPosition = 2; },
     "EtherMfs = 3",
     "lecs 1",
     "LECS: restart refused (9). It is stopped, or runs with its old settings.",
     "LECS: no answer to the restart. Whether it runs is unknown.",
     {"enabled 0, 0 entries", "enabled 0, 0 entries", "enabled 1, etherMtuClass 3, 0 entries"}},
    {"lecs.map",
     [] { lecsXferBuffer.etherMtuPosition = 2; },
     "EtherMfs = 3",
     "lecs 1",
     "Client 00:a0:3e:00:00:01-00 of LES 1 refused (9): the LECS runs without it."
     "Client 00:a0:3e:00:00:11-00 of LES 1 refused (9): the LECS runs without it."
     "Client 00:20:40:00:c1:01-00 of LES 1 refused (9): the LECS runs without it."
     "Client 00:20:40:00:c1:02-00 of LES 1 refused (9): the LECS runs without it."
     "Client 00:20:40:00:c1:03-00 of LES 1 refused (9): the LECS runs without it."
     "Client 00:a0:3e:00:00:02-00 of LES 2 refused (9): the LECS runs without it."
     "Client 00:20:40:00:c2:01-00 of LES 2 refused (9): the LECS runs without it.",
     "Client 00:a0:3e:00:00:01-00 of LES 1: no answer. Whether the LECS has it is unknown."
     "Client 00:a0:3e:00:00:11-00 of LES 1 not sent: the LECS runs without it."
     "Client 00:20:40:00:c1:01-00 of LES 1 not sent: the LECS runs without it."
     "Client 00:20:40:00:c1:02-00 of LES 1 not sent: the LECS runs without it."
     "Client 00:20:40:00:c1:03-00 of LES 1 not sent: the LECS runs without it."
     "Client 00:a0:3e:00:00:02-00 of LES 2 not sent: the LECS runs without it."
     "Client 00:20:40:00:c2:01-00 of LES 2 not sent: the LECS runs without it.",
     {"enabled 1, etherMtuClass 3, 0 entries", "enabled 1, etherMtuClass 3, 0 entries",
      "enabled 1, etherMtuClass 3, 1 entries"}},
    {"lecs.stop",
     [] { lecsXferBuffer.enabled = 0; },
     "Enabled = 0",
     "lecs 1",
     "LECS: stop refused (9). It still runs.",
     "LECS: no answer to the stop. Whether it still runs is unknown.",
     {"enabled 1, etherMtuClass 1, 7 entries", "enabled 1, etherMtuClass 1, 7 entries",
      "enabled 0, 0 entries"}},
    {"ip.start",
     [] { ip1577XferBuffer.pvcOnly = 1; },
     "Config = 1  # 1 = PVCs only, no ATMARP server",
     "ip 1",
     "Classical IP: restart refused (9). It runs with its old settings."
     "PVC 0 / 120 of Classical IP refused (13). The client was not restarted and may have it already.",
     "Classical IP: no answer to the restart. What it runs with is unknown.",
     {"enabled 1, pvcOnly 0, 1 entries", "enabled 1, pvcOnly 0, 1 entries",
      "enabled 1, pvcOnly 1, 0 entries"}},
    {"ip.stop",
     [] { ip1577XferBuffer.enabled = 0; },
     "Enabled = 0",
     "ip 1",
     "Classical IP: stop refused (9). It still runs.",
     "Classical IP: no answer to the stop. Whether it still runs is unknown.",
     {"enabled 1, pvcOnly 0, 1 entries", "enabled 1, pvcOnly 0, 1 entries", "enabled 0, 0 entries"}},
    {"ip.pvc-add",
     [] { ip1577XferBuffer.pvcOnly = 1; },
     "Config = 1  # 1 = PVCs only, no ATMARP server",
     "ip 1",
     "PVC 0 / 120 of Classical IP refused (9): the client runs without it.",
     "PVC 0 / 120 of Classical IP: no answer. Whether the client has it is unknown.",
     {"enabled 1, pvcOnly 1, 0 entries", "enabled 1, pvcOnly 1, 0 entries",
      "enabled 1, pvcOnly 1, 1 entries"}},
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
        writeSampleConfiguration(root);
        atmDevices = AtmDevices();
        start({"--frozen", "--adapters", "1"});
        const std::string before = dump(), file = root.read(parameterFile);
        simulator->ctl(fmt::format("fault {} {}", c.request, fault.fault));
        const auto session = [&] {
            configure([&] {
                c.change();
                press(okBTN);
            });
        };
        EXPECT_EQ(boxesOf(session), Names{"Driver Error"});
        EXPECT_EQ(boxText, fmt::format("The driver did not take everything:{}{}The file has the change.",
                                       GetParam() == refused ? c.refused : c.unanswered, fault.last));
        const Running now = running(dump(), c.service);
        EXPECT_EQ(now.service, c.runs[GetParam()]);
        EXPECT_EQ(now.others, running(before, c.service).others);
        Names lines = differences(file, root.read(parameterFile));
        ASSERT_EQ(lines.size(), 2U);
        std::string& saved = lines[1];
        saved.erase(saved.find(' '), saved.find('=') - saved.find(' ') - 1);
        EXPECT_EQ(saved, fmt::format("+\t\t{}", c.saved));
        window.reset();
    }
}

INSTANTIATE_TEST_SUITE_P(Each, Refusals, testing::Values(refused, unanswered, cutOff),
                         [](const auto& of) { return faults[of.param].name; });
