#include "app/apply.h"

#include "change/restart.h"
#include "driver/channel.h"
#include "model/settings.h"
#include "model/tvdatbuf.h"
#include "tests/support/scripteddriver.h"

#include <fcntl.h>

namespace {

// Adapter 3 with everything enabled: client 3 has two PVCs, servers 1 and 3 have ELAN clients.
class ApplyTest : public testing::Test {
  protected:
    ScriptedDriver driver;
    LogCapture log;
    ChangeRecord record;
    std::vector<std::string> sentences;

    void SetUp() override {
        currentAdapter = 2;
        ioctlDesc.open(O_RDONLY);
        atmDevices = AtmDevices();
        driver.otherwise([](auto, Answer&) {});
        for (AtmLEC& lec : atmDevices.lec[2]) lec.enabled = 1;
        atmDevices.lec[2][2].pvcs = {{macAddress({1, 2, 3, 4, 5, 6}), 100, 1, 0, 0},
                                     {macAddress(), 101, 0, 1, 0}};
        for (AtmLES& les : atmDevices.les[2]) les.enabled = 1;
        atmDevices.les[2][0].clients = {esiSelector({1}), esiSelector({2})};
        atmDevices.les[2][2].clients = {esiSelector({3})};
        atmDevices.lecs[2].enabled = 1;
        atmDevices.ip1577[2].enabled = 1;
        atmDevices.ip1577[2].pvcs = {{ipAddress({10, 0, 0, 1}), 200, 1, 0, 0}};
        MapDataToXferBuffer();
    }
    void TearDown() override { ioctlDesc.close(); }

    // Applies, and tells which data changed, and the requests as "prim.type.unit".
    std::string apply() {
        const std::size_t before = driver.requests().size();
        log.take();
        std::string told;
        const ServiceSet changed = MapXferBufferToData();
        DriverChannel channel;
        if (changed.any() && ioctlDesc) channel.open(O_RDWR);
        record = {};
        DriverPhase phase(channel, ioctlDesc ? DriverUse::told : DriverUse::none, record);
        restartServices(currentAdapter, atmDevices, changed, phase, channel);
        sentences.clear();
        for (const DriverSentence& sentence : phase.sentences()) sentences.push_back(sentence.text);
        std::istringstream lines(log.take());
        for (std::string line; std::getline(lines, line);)
            if (const auto at = line.find(" data changed"); at != line.npos) told += ' ' + line.substr(0, at);
        for (std::size_t i = before; i < driver.requests().size(); ++i) {
            const ByteVector& request = driver.requests()[i];
            EXPECT_EQ(request[4], 2) << "the adapter's own index";
            told += fmt::format(" {}.{}.{}", request[0], request[2], request[5]);
        }
        return told;
    }
};

const char lecRestart[] = " Lec2 17.1.2 17.3.2 17.3.2", lesRestart[] = " Les4 18.2.4 18.1.4";
const char lecsRestart[] = " Lecs 19.2.0 19.1.0 19.5.0 19.3.0 19.3.0 19.3.0",
           ipRestart[] = " IP1577 65.1.0 65.4.0";

// A change of one field only: what is sent for it.
struct Change {
    const char* field;
    void (*make)();
    const char* sent;
};
#define CHANGE(expression) #expression, [] { expression; }
const Change changes[] = {
    {"none", [] {}, ""},
    {CHANGE(xferBuffer[2].elanName = "x"), lecRestart},
    {CHANGE(xferBuffer[2].networkPrefix = "47112233445566778899aabbcc"), lecRestart},
    {CHANGE(xferBuffer[2].esiSelector = "00a03e00000107"), lecRestart},
    {CHANGE(xferBuffer[2].l3Mtu = 9000), lecRestart},
    {CHANGE(xferBuffer[2].useLecs = 0), lecRestart},
    {CHANGE(xferBuffer[2].enabled = 0), " Lec2 17.2.2"},
    {CHANGE(xferBuffer[2].pvcOnly = 1), lecRestart},
    {CHANGE(xferBuffer[2].mtuPosition = 2), lecRestart},
    {CHANGE(xferBuffer[2].elanType = 0), lecRestart},
    {CHANGE(xferBuffer[2].macText = "x"), ""},
    {CHANGE(xferBuffer[2].pvcs.clear()), ""},
    {CHANGE(lesXferBuffer[4].mtuPosition = 1), lesRestart},
    {CHANGE(lesXferBuffer[4].enabled = 0), " Les4 18.2.4"},
    {CHANGE(lesXferBuffer[4].strictMtu = 1), lesRestart},
    {CHANGE(lesXferBuffer[4].strictName = 1), lesRestart},
    {CHANGE(lesXferBuffer[4].elanType = 0), lesRestart},
    {CHANGE(lesXferBuffer[4].elanName = "x"), lesRestart},
    {CHANGE(lesXferBuffer[4].clients = {esiSelector({9})}), ""},
    {CHANGE(lecsXferBuffer.etherMtuPosition = 1), lecsRestart},
    {CHANGE(lecsXferBuffer.tokenRingMtuPosition = 1), lecsRestart},
    {CHANGE(lecsXferBuffer.enabled = 0), " Lecs 19.2.0"},
    {CHANGE(lecsXferBuffer.elanType = 2), lecsRestart},
    {CHANGE(lecsXferBuffer.networkPrefix = "47112233445566778899aabbcc"), lecsRestart},
    {CHANGE(lecsXferBuffer.esiSelector = "00a03e00000107"), lecsRestart},
    {CHANGE(ip1577XferBuffer.enabled = 0), " IP1577 65.2.0"},
    {CHANGE(ip1577XferBuffer.pvcOnly = 1), ipRestart},
    {CHANGE(ip1577XferBuffer.arpServerHere ^= 1), ipRestart},
    {CHANGE(ip1577XferBuffer.networkPrefix = "47112233445566778899aabbcc"), ipRestart},
    {CHANGE(ip1577XferBuffer.esiSelector = "00a03e00000107"), ipRestart},
    {CHANGE(ip1577XferBuffer.serverIp = "10.0.0.1"), ipRestart},
    {CHANGE(ip1577XferBuffer.ip = "10.0.0.1"), ipRestart},
    {CHANGE(ip1577XferBuffer.subnetMask = "255.0.0.0"), ipRestart},
    {CHANGE(ip1577XferBuffer.pvcs.clear()), ""},
    {CHANGE(sigXferBuffer.uniPosition = 1), " Signalling"},
    {CHANGE(sigXferBuffer.addressRegistration = 0), " Signalling"},
    {CHANGE(sigXferBuffer.portChangeDetect = 0), " Signalling"},
    {CHANGE(sigXferBuffer.registerOtherPrefixes = 0), " Signalling"},
    {CHANGE(sigXferBuffer.networkPrefix = "47112233445566778899aabbcc"), " Signalling"},
};
#undef CHANGE

TEST_F(ApplyTest, AChangeOfOneFieldSendsWhatItsServiceNeedsAndNothingElse) {
    for (const Change& change : changes) {
        SetUp();
        change.make();
        EXPECT_EQ(apply(), change.sent) << change.field;
        MapDataToXferBuffer();
        EXPECT_EQ(apply(), "") << "taken over: " << change.field;
    }
}

// What the driver does not take is named, and changes neither the rest of the sequence nor the records. After
// a request without an answer nothing more is sent.
TEST_F(ApplyTest, WhatTheDriverDoesNotTakeIsNamed) {
    const std::vector<std::string> unsent{"LES 5: not restarted. It runs with its old settings.",
                                          "LECS: not restarted. It runs with its old settings.",
                                          "Classical IP: not restarted. It runs with its old settings."};
    const auto with = [](const char* first, std::vector<std::string> rest, const char* last) {
        rest.insert(rest.begin(), first);
        rest.push_back(last);
        return rest;
    };
    const struct {
        const char* name;
        void (*prepare)(ScriptedDriver&);
        std::size_t requests, named;
        std::vector<std::string> sentences;  // not of refusals: the windows' tests show each of those
    } drivers[] = {
        {"refuses", [](ScriptedDriver& d) { d.otherwise([](auto, Answer& a) { a.resp(5); }); }, 12, 10, {}},
        {"hangs", [](ScriptedDriver& d) { d.otherwise([](auto, Answer& a) { a.error(ETIME); }); }, 1, 5,
         with("LEC 3: no answer to the restart. What it runs with is unknown.", unsent,
              "Nothing more was sent after a request without an answer.")},
        {"was not there at start-up", [](ScriptedDriver&) { ioctlDesc.close(); }, 0, 0, {}},
        {"cannot be opened now", [](ScriptedDriver& d) { d.failCall(1, EACCES); }, 0, 5,
         with("LEC 3: not restarted. It runs with its old settings.", unsent,
              "The driver cannot be opened: Permission denied.")},
    };
    for (const auto& d : drivers) {
        SetUp();
        d.prepare(driver);
        xferBuffer[2].elanName = "x";
        lesXferBuffer[4].elanName = "y";
        lecsXferBuffer.etherMtuPosition = 2;
        ip1577XferBuffer.subnetMask = "255.0.0.0";
        sigXferBuffer.uniPosition = 1;
        const std::size_t before = driver.requests().size();
        const std::string told = apply();
        EXPECT_EQ(driver.requests().size() - before, d.requests) << d.name;
        EXPECT_TRUE(told.starts_with(" Lec2 Les4 Lecs IP1577 Signalling")) << told;
        EXPECT_EQ(sentences.size(), d.named) << d.name;
        if (!d.sentences.empty()) {
            EXPECT_EQ(sentences, d.sentences) << d.name;
        }
        EXPECT_EQ(atmDevices.lec[2][2].elanName.view(), "x") << d.name;
        EXPECT_EQ(atmDevices.lecs[2].etherMtuClass, 3) << d.name;
        EXPECT_EQ(atmDevices.sig[2].uniRevision, 31) << d.name;
    }
}

TEST_F(ApplyTest, CancelTakesOverTheListsOnly) {
    xferBuffer[1].pvcs = {{macAddress({1}), 7, 0, 0, 25}};
    lesXferBuffer[7].clients = {esiSelector({9})};
    ip1577XferBuffer.pvcs.clear();
    xferBuffer[1].elanName = lesXferBuffer[7].elanName = ip1577XferBuffer.ip = "x";
    MapXferBufferPVCsToData();
    MapXferBufferELANsToData();
    EXPECT_EQ(atmDevices.lec[2][1].pvcs.at(0).vci, 7);
    EXPECT_EQ(atmDevices.les[2][7].clients.at(0), esiSelector({9}));
    EXPECT_TRUE(atmDevices.ip1577[2].pvcs.empty());
    EXPECT_NE(atmDevices.lec[2][1].elanName.view(), "x");
    EXPECT_NE(atmDevices.les[2][7].elanName.view(), "x");
    EXPECT_NE(atmDevices.ip1577[2].ip.view(), "x");
    EXPECT_TRUE(driver.requests().empty());
}

}  // namespace
