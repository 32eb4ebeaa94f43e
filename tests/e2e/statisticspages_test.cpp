// The pages of the statistics dialog: what each shows of the driver's replies.
#include "tests/e2e/statisticstest.h"

namespace {

constexpr const char* address = "11:22:33:44:55:66:77:88:99:aa:bb:cc:dd:0e:1e:2e:3e:4e:5e-6e";
constexpr const char* prefix = "11:22:33:44:55:66:77:88:99:aa:bb:cc:dd";
constexpr const char* esi = "0e:1e:2e:3e:4e:5e-6e";
constexpr const char* otherAddress = "47:91:82:73:64:55:46:37:28:19:0a:fb:ec:a0:a1:a2:a3:a4:a5-a6";
constexpr const char* otherPrefix = "47:91:82:73:64:55:46:37:28:19:0a:fb:ec";
constexpr const char* otherEsi = "a0:a1:a2:a3:a4:a5-a6";

}  // namespace

// ---- Signalling ----

TEST_F(StatisticsTest, SignallingStatesHaveTheirTextsAndLamps) {
    startOn("signallingStats");
    const struct {
        std::string field, lamp, states;  // and their texts
    } cases[] = {
        {"ilmi", "unlit", "0 ILMI Disabled; 255 ILMI Not configured"},
        {"ilmi", "lit", "2 ILMI Registered; 3 ILMI Static Registration"},
        {"ilmi", "greyed", "1 ILMI Registering; 4 XXXX; 254 XXXX"},
        {"saal", "greyed",
         "0 SSCOP Idle; 1 Outgoing Connection Pending; 2 Incoming Connection Pending; "
         "3 Outgoing disconnection pending; 4 Outgoing resync pending; 5 Incoming resync pending; "
         "6 Outgoing recovery pending; 7 Incoming recovery pending; 8 Recovery response pending; 10 XXXX"},
        {"saal", "lit", "9 Data transfer ready"},
        {"saal", "unlit", "255 SSCOP Not configured"},
        {"signalling", "greyed", "0 Signalling Disconnected; 2 XXXX; 128 XXXX"},
        {"signalling", "lit", "1 Signalling Ready"},
        {"signalling", "unlit", "255 Signalling Not configured"},
    };
    set("sig 1", "address {}", address);
    for (const auto& c : cases)
        for (const std::string& state : split(c.states)) {
            const std::size_t blank = state.find(' ');
            set("sig 1", "{} {}", c.field, state.substr(0, blank));
            expectLooks("{0}={1}; {0}Lamp={2}", c.field, state.substr(blank + 1), c.lamp);
            if (c.lamp == "lit" && c.field == "saal") {
                EXPECT_EQ(user->tooltipOf(onPage("saalLamp")), "Data transfer ready, state 9");
            }
            if (c.field != "ilmi") continue;
            const bool registered = c.lamp == "lit";
            expectLooks("networkPrefix={}; esiSelector={}", registered ? prefix : "", registered ? esi : "");
        }
}

TEST_F(StatisticsTest, SignallingFramesCountFromTheLastClear) {
    startOn("signallingStats");
    set("vc 1 row 1", "vci 77; rxPackets 999");
    set("vc 1 row 2", "vci 16; txPackets 4294967290; rxPackets 200");
    set("vc 1 row 3", "vci 5; txPackets 30; rxPackets 40");
    set("sig 1", "saal 9");
    const std::string labels = "|VPI/VCI|Frames In|Frames Out";
    expectTable("signallingTable", {labels, "ILMI|  0/  16|200|4294967290", "Signalling|  0/   5|40|30"});
    press("clear");
    const Names cleared{labels, "ILMI|  0/  16|0|0", "Signalling|  0/   5|0|0"};
    EXPECT_EQ(tableLines("signallingTable"), cleared) << "at once";
    expectLooks("saal=Data transfer ready");
    ctl("set vc 1 row 2 txPackets 4; set vc 1 row 2 rxPackets 205; set vc 1 row 3 txPackets 29");
    const Names grown{labels, "ILMI|  0/  16|5|10", "Signalling|  0/   5|0|4294967295"};
    expectTable("signallingTable", grown);
    // A circuit that is gone, a table of one row and a refused request leave what stands.
    ctl("set vc 1 row 3 vci 6; set vc 1 row 3 rxPackets 99");
    for (const char* trouble : {"", "rows vc 1 1; set vc 1 row 1 vci 16", "fault vc.table every resp 5"}) {
        ctl(trouble);
        ticks();
        EXPECT_EQ(tableLines("signallingTable"), grown) << trouble;
    }
    ctl("fault sig.link every resp 5; set sig 1 saal 3");
    ticks();
    expectLooks("saal=Data transfer ready; saalLamp=lit");
    ctl("fault clear; rows vc 1 auto; set vc 1 row 1 vci 77; set vc 1 row 3 vci 5");
    expectTable("signallingTable", {labels, "ILMI|  0/  16|5|10", "Signalling|  0/   5|59|4294967295"});
    expectLooks("saal=Outgoing disconnection pending");
}

TEST_F(StatisticsTest, ClearOnTheSignallingPageAsksForTheCircuitsAlone) {
    timerTime = 60000;
    startOn("signallingStats");
    loggedRequests();
    press("clear");
    EXPECT_EQ(requestNames(), Names{"vc.table"});
}

// ---- AAL5 ----

TEST_F(StatisticsTest, Aal5CountersAreTheWordsOfTheReplyAndTheirSums) {
    startOn("aal5Stats");
    set("adapter 1",
        "txCells 11; rxCells 4294967295; txPackets 13; rxPackets 14; rxCellErrors1 1; rxCellErrors2 20; "
        "rxCellErrors3 300; rxCellErrors4 4000; rxFrameErrors1 5; rxFrameErrors2 60; rxFrameErrors3 700; "
        "rxFrameErrors4 8000; rxDrops1 4294967295; rxDrops2 10; invalidVcis 15; invalidVpis 16; txDrops 17");
    const std::string all = "txCells=11; rxCells=4294967295; txPackets=13; rxPackets=14; rxCellErrors=4321; "
                            "rxFrameErrors=8765; rxDropped=9; invalidVcis=15; invalidVpis=16; txDropped=17";
    ctl("alarm 1 lop on");
    expectLooks(all + "; lopLamp=unlit");
    ctl("fault adapter.aal every resp 5");
    press("clear");
    expectLooks(all);  // what is not answered is not cleared
    ctl("fault clear");
    press("clear");
    expectZero(all);
    expectLooks("sonet*title=OC3c MM; losLamp=lit; lopLamp=unlit");
    set("adapter 1", "rxCells 2; rxDrops2 9; rxFrameErrors3 710");
    expectLooks("rxCells=3; rxDropped=4294967295; rxFrameErrors=10; txCells=0");
}

TEST_F(StatisticsTest, AlarmsPutTheirLampsOut) {
    startOn("aal5Stats");
    const struct {
        const char *alarm, *dark;
    } cases[] = {{"los", "los"}, {"lof", "lof ferf lop"}, {"oof", "oof"}, {"ferf", "ferf"},
                 {"ais", "ais"}, {"lop", "lop"},          {"link", ""}};
    for (const auto& c : cases) {
        std::string looks;
        for (const std::string lamp : {"los", "lof", "oof", "ferf", "ais", "lop"})
            looks += fmt::format("{}{}Lamp={}", looks.empty() ? "" : "; ", lamp,
                                 std::string(c.dark).find(lamp) == std::string::npos ? "lit" : "unlit");
        ctl(fmt::format("alarm 1 {} on", c.alarm));
        ticks();
        expectLooks(looks);
        ctl(fmt::format("fault adapter.suni every resp 5; alarm 1 {} off", c.alarm));
        ticks();
        expectLooks(looks);  // without an answer they stay
        ctl("fault clear");
    }
    ctl("alarm 1 lof on; alarm 1 ferf on; alarm 1 lop on; alarm 1 los on");
    expectLooks("lofLamp=unlit; ferfLamp=unlit; lopLamp=unlit; losLamp=unlit; aisLamp=lit");
    EXPECT_EQ(user->tooltipOf(onPage("aisLamp")), "No alarm indication signal, state 0");
    ctl("alarm 1 lop off");
    ticks();
    EXPECT_EQ(user->tooltipOf(onPage("lopLamp")), "Unknown during loss of frame, state 0");
    ctl("alarm 1 lop on");
    ctl("alarm 1 lof off; alarm 1 los off");
    expectLooks("lofLamp=lit; ferfLamp=unlit; lopLamp=unlit; losLamp=lit; aisLamp=lit");
    EXPECT_EQ(user->tooltipOf(onPage("ferfLamp")), "Far end receive failure, state 1");
}

TEST_F(StatisticsTest, TheKindOfTheLinkIsTheCaptionOfItsAlarms) {
    const std::string grey =
        "losLamp=greyed; lofLamp=greyed; oofLamp=greyed; ferfLamp=greyed; aisLamp=greyed; lopLamp=greyed";
    const struct {
        int kind;
        const char *caption, *label, *lamp;  // with the alarm of a 25 Mbit/s link
    } cases[] = {{1, "25 Mb/s", "Link Up", "unlit"},
                 {2, "OC3c MM", "LOS:", "lit"},
                 {3, "OC3c SM", "LOS:", "lit"},
                 {4, "155 UTP", "LOS:", "lit"},
                 {7, "Unknown", "LOS:", "lit"}};
    for (const auto& c : cases) {
        startOn("aal5Stats",
                fmt::format("set adapter 1 link {}; set adapter 1 linkAlarm 3; set adapter 1 lop 1", c.kind));
        const std::string caption = fmt::format("sonet*title={}; losLampLabel={}", c.caption, c.label),
                          lamps = fmt::format("losLamp={}; lofLamp=lit; lopLamp=unlit", c.lamp);
        expectLooks(caption + "; " + lamps);
        set("adapter 1", "link {}; valid 0", c.kind == 1 ? 1 : 5);
        ticks();
        expectLooks(caption + "; " + (c.kind == 1 ? lamps : grey));  // the caption is written once
        set("adapter 1", "valid {}; los 1; linkAlarm 0; rxPackets 5", c.kind == 1 ? 0 : 1);
        expectLooks("rxPackets=5; " + (c.kind == 1 ? "losLamp=lit" : grey));
        if (c.kind != 1) {
            EXPECT_EQ(asked(), Names{"adapter.aal"}) << c.kind;
        }
    }
}

// ---- All services ----

// Fields and tables are there while it has a state.
TEST_F(StatisticsTest, TheStateDecidesLampsFieldsAndTables) {
    const struct {
        std::string page, place, other, field, value, table;
        int rows;
        std::string states;    // each with a value of the other field, and the lamp
        std::string tooltips;  // of the lamp in some states
    } pages[] = {
        {"lecStats", "lec 1.1", "works", "elanName", "engineering", "lecTable", 2,
         "0 0 greyed; 1 0 unlit; 0 1 greyed; 1 1 lit; 2 1 unlit; 3 0 unlit; 4 0 unlit; 5 0 unlit; 6 0 lit; "
         "7 0 unlit; 6 0 lit; 4294967295 0 unlit",
         "0 no such client; 1 On PVCs, state 1; 3 Joining, state 3; 9 unknown state 9"},
        {"lesStats", "les 1.1", "serves", "elanName", "engineering", "clientTable", 6,
         "1 0 unlit; 1 5 lit; 0 5 greyed; 2 1 unlit; 4294967295 0 unlit; 1 1 lit",
         "0 no such server; 1 Serving, state 1"},
        {"lecsStats", "lecs 1", "registered", "validRequests", "5", "", 0,
         "4 256 lit; 0 1 greyed; 1 0 unlit; 2 1 unlit; 3 0 unlit; 5 1 unlit; 4 0 lit",
         "0 no configuration server; 2 Starting, state 2"},
        {"ip1577Stats", "ip 1", "tx2", "txPackets", "0", "connectionTable", 7,
         "1 0 unlit; 0 0 greyed; 2 0 unlit; 3 0 unlit; 4 0 unlit; 5 0 lit; 6 0 unlit",
         "0 no such client; 5 Running, state 5"},
    };
    start("1,2", {"rows lec 1.1 2", "rows les 1.1 6", "rows ip 1 7", "set lecs 1 validRequests 5"});
    openDialog();
    for (const auto& p : pages) {
        turnTo(p.page);
        for (const std::string& row : split(p.states)) {
            SCOPED_TRACE(p.place + ' ' + row);
            std::istringstream words(row);
            std::string state, other, lamp;
            words >> state >> other >> lamp;
            set(p.place, "{} {}; state {}", p.other, other, state);
            expectLooks("stateLamp={}; {}={}", lamp, p.field, state == "0" ? "" : p.value);
            if (p.rows) expectRows(p.table, state == "0" ? 0 : p.rows);
            if (p.page == "lecStats") expectRows("lesBusTable", state == "6" ? 4 : 0);
            if (p.page == "lecsStats")
                expectLooks("regLamp={}", state == "0" ? "greyed" : other == "0" ? "unlit" : "lit");
        }
        for (const std::string& tooltip : split(p.tooltips)) {
            const std::size_t blank = tooltip.find(' ');
            set(p.place, "{} 1; state {}", p.other, tooltip.substr(0, blank));
            ticks();
            EXPECT_EQ(user->tooltipOf(onPage("stateLamp")), tooltip.substr(blank + 1));
        }
    }
}

// A service that fails and comes back in the state that it had, on every page that has one.
TEST_F(StatisticsTest, AFailureEmptiesThePageUntilTheDriverAnswersAgain) {
    const struct {
        const char *page, *service, *field, *table;
        bool tableWithoutStats;  // the table needs the state only
    } cases[] = {{"lecStats", "lec", "elanName", "lecTable", true},
                 {"lesStats", "les", "elanName", "clientTable", false},
                 {"lecsStats", "lecs", "validRequests", nullptr, false},
                 {"ip1577Stats", "ip", "rxPackets", "connectionTable", false}};
    start("1,2", {"clock step 300"});
    openDialog();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.page);
        turnTo(c.page);
        ticks();
        const std::string value = look(c.field);
        ASSERT_NE(value, "");
        const int rows = c.table ? table(c.table).model().rows() : 0;
        ASSERT_TRUE(!c.table || rows > 0);
        const auto expectAll = [&](const std::string& text, const char* lamp, int shownRows) {
            expectLooks(fmt::format("{}={}; stateLamp={}", c.field, text, lamp));
            if (c.table) expectRows(c.table, shownRows);
        };
        for (const std::string fault : {"state every resp 5", "state every dead", "state every errno EIO",
                                        "stats every resp 5", "rows every resp 5", "table every resp 5"}) {
            SCOPED_TRACE(fault);
            ctl(fmt::format("fault {}.{}", c.service, fault));
            if (fault.starts_with("state"))
                expectAll("", "greyed", 0);
            else if (fault.starts_with("stats"))
                expectAll("", "lit", c.tableWithoutStats ? rows : 0);
            else
                expectAll(value, "lit", 0);
            ctl("fault clear");
            expectAll(value, "lit", rows);
        }
    }
}

// ---- LEC ----

TEST_F(StatisticsTest, AnotherLecShowsNothingOfTheOneBefore) {
    startOn("lecStats", "set lec 1.1 elanName Tarvolin; rows vc 1 3; set vc 1 row 3 vci 900");
    set("lec 1.1", "works 1; state 1");
    set("lec 1.2", "works 0; state 1; elanName second");
    expectLooks("stateLamp=lit; elanName=Tarvolin");
    show("lecTabs", 2);
    expectLooks("stateLamp=unlit; elanName=second");
    set("lec 1.2", "works 1");
    expectLooks("stateLamp=lit");

    set("lec 1.1", "state 6; controlDirectVci 900; multicastSendVci 900");
    set("lec 1.2", "state 6; controlDirectVci 0; controlDistributeVci 0; multicastSendVci 901; "
                   "multicastForwardVci 0");
    show("lecTabs", 1);
    expectCell("lesBusTable", 1, 1, "  0/ 900");
    show("lecTabs", 2);
    expectCell("lesBusTable", 1, 3, "  0/ 901");
    EXPECT_EQ(cell("lesBusTable", 1, 1) + cell("lesBusTable", 2, 3), "");
}

TEST_F(StatisticsTest, ALecShowsWhatTheDriverSays) {
    startOn("lecStats", "rows vc 1 60; rows lec 1.3 2");
    set("lec 1.3",
        "state 6; address {0}; elanType 2; mtu 4; elanName abcdefghijklmnopqrstuvwxyz012345; "
        "mac 01:23:45:67:89:ab; controlDirect {0}; controlDistribute {1}; multicastSend {1}; "
        "multicastForward {0}; controlDirectVci 32; controlDistributeVci 0; "
        "multicastSendVci 65535; multicastForwardVci 999",
        address, otherAddress);
    set("vc 1 row 58", "vci 32; txPackets 1000; rxPackets 2000");
    set("vc 1 row 59", "vci 65535; txPackets 3000; rxPackets 4000");
    set("lec 1.3 row 1", "mac 10:20:30:40:50:60; kind 1; vci 100; address {}; txPackets 70; rxPackets 80",
        otherAddress);
    set("lec 1.3 row 2", "mac 10:20:30:40:50:61; kind 2; vci 40000; txPackets 4294967295; rxPackets 0");
    expectLooks("elanName=engineering");
    show("lecTabs", 3);
    const std::string fields = fmt::format("elanName=abcdefghijklmnopqrstuvwxyz012345; "
                                           "macAddress=01:23:45:67:89:ab; elanType=Token Ring; mtu=18190; "
                                           "networkPrefix={}; esiSelector={}; stateLamp=lit",
                                           prefix, esi);
    expectLooks(fields);
    const std::string here = fmt::format("|{}|{}", prefix, esi),
                      there = fmt::format("|{}|{}", otherPrefix, otherEsi);
    expectTable("lesBusTable",
                {"|VPI/VCI|Tx Packets|Rx Packets|NetworkPrefix|ESI/Selector",
                 "Control Dir|  0/  32|1000|2000" + here, "Control Dist|||||",
                 "Multicast Send|  0/65535|3000|4000" + there, "Multicast Fwd|  0/ 999||" + here});
    const std::string labels = "|MAC Address|VPI/VCI|Tx Packets|Rx Packets|Network Prefix|ESI/Selector";
    const std::string pvc = "|   PVC Connection                     |   PVC Connection   ";
    expectTable("lecTable", {labels, "1|10:20:30:40:50:60|  0/ 100|70|80" + there,
                             "2|10:20:30:40:50:61|  0/40000|4294967295|0" + pvc});
    press("clear");
    const Names cleared{labels, "1|10:20:30:40:50:60|  0/ 100|0|0" + there,
                        "2|10:20:30:40:50:61|  0/40000|0|0" + pvc};
    EXPECT_EQ(tableLines("lecTable"), cleared);
    EXPECT_EQ(cell("lesBusTable", 2, 1) + cell("lesBusTable", 3, 1) + cell("lesBusTable", 3, 3), "000");
    expectLooks(fields);

    ctl("set lec 1.3 row 2 txPackets 1; set vc 1 row 58 txPackets 1001; rows lec 1.1 1");
    set("lec 1.1", "state 6; controlDirectVci 32; row 1 vci 100; row 1 txPackets 75");
    expectCell("lecTable", 3, 2, "2");
    expectCell("lesBusTable", 2, 1, "1");
    // Baselines of connections belong to the VCI, those of the circuits to LES and BUS to the client.
    show("lecTabs", 1);
    expectCell("lecTable", 3, 1, "5");
    expectCell("lesBusTable", 2, 1, "1001");
    // A connection that is gone leaves its row; another state empties the table.
    set("lec 1.1", "controlDirectVci 0; row 1 txPackets 76");
    expectCell("lecTable", 3, 1, "6");
    EXPECT_EQ(cell("lesBusTable", 1, 1), "  0/  32");
    // A circuit that the driver has no more leaves its counters.
    set("lec 1.1", "controlDirectVci 32; row 1 txPackets 77");
    ctl("set vc 1 row 58 vci 31; set vc 1 row 58 txPackets 5");
    expectCell("lecTable", 3, 1, "7");
    EXPECT_EQ(cell("lesBusTable", 2, 1), "1001");
    set("lec 1.1", "controlDirectVci 0");
    for (const int state : {5, 6}) {
        set("lec 1.1", "state {}", state);
        expectRows("lesBusTable", state == 6 ? 4 : 0);
    }
    EXPECT_EQ(cell("lesBusTable", 0, 4) + cell("lesBusTable", 1, 1), "Multicast Fwd");
    EXPECT_EQ(user->tooltipOf(onPage("lesBusTable*cells")),
              "LES/BUS Connections (right button or Menu key: menu)");
}

TEST_F(StatisticsTest, CircuitsThatWereRefusedForATimeShowTheirCountersAgain) {
    startOn("lecStats",
            "rows vc 1 2; set vc 1 row 1 vci 32; set vc 1 row 1 txPackets 5; set vc 1 row 2 vci 33");
    set("vc 1 row 2", "txPackets 9");
    set("lec 1.1", "state 6; controlDirectVci 32; elanName before");
    expectCell("lesBusTable", 2, 1, "5");
    ctl("fault vc.table every resp 5");
    set("lec 1.1", "controlDirectVci 33; elanName after");
    expectCell("lesBusTable", 1, 1, "  0/  33");
    EXPECT_EQ(cell("lesBusTable", 2, 1), "5");
    ctl("fault clear");
    expectCell("lesBusTable", 2, 1, "9");
}

// ---- LES ----

TEST_F(StatisticsTest, ALesShowsWhatTheDriverSays) {
    startOn("lesStats", "rows les 1.2 6");
    set("les 1.2", "state 1; serves 1; address {}; bus {}; elanType 1; mtu 2; elanName second", address,
        otherAddress);
    for (int row = 1; row <= 6; ++row)
        set(fmt::format("les 1.2 row {}", row),
            "mac 00:00:00:00:00:0{0}; state {1}; controlVci 4{0}; controlTx 10{0}; controlRx 20{0}; "
            "multicastVci 5{0}; multicastTx 30{0}; multicastRx 40{0}; address {2}",
            row, row == 6 ? 65535 : row - 1, row % 2 ? address : otherAddress);
    show("lesTabs", 2);
    const std::string all =
        fmt::format("stateLamp=lit; elanName=second; elanType=Ethernet; mtu=4544; networkPrefix={}; "
                    "esiSelector={}; busNetworkPrefix={}; busEsiSelector={}",
                    prefix, esi, otherPrefix, otherEsi);
    expectLooks(all);
    const char* const states[] = {"Idle", "Signalling A", "Signalling B", "Active", "XXXX", "XXXX"};
    const auto lines = [&](const char* counters) {
        Names result{"|LD Address|State|Ctl Dir VCI|CD Tx Pkts|CD Rx Pkts|Mul Snd VCI|MSTx Pkts|MS Rx Pkts|"
                     "Network Prefix|ESI/Selector"};
        for (int row = 1; row <= 6; ++row)
            result.push_back(fmt::format("{0}|00:00:00:00:00:0{0}|{1}|  0/  4{0}|", row, states[row - 1]) +
                             fmt::format(fmt::runtime(counters), row) +
                             fmt::format("|{}|{}", row % 2 ? prefix : otherPrefix, row % 2 ? esi : otherEsi));
        return result;
    };
    expectTable("clientTable", lines("10{0}|20{0}|  0/  5{0}|30{0}|40{0}"));
    press("clear");
    EXPECT_EQ(tableLines("clientTable"), lines("0|0|  0/  5{0}|0|0"));
    expectLooks(all);
    // The baselines go with the client: the first one comes back in the last row.
    ctl("set les 1.2 row 6 mac 00:00:00:00:00:01; set les 1.2 row 1 mac 00:00:00:00:00:09; "
        "set les 1.2 row 6 multicastRx 400");
    expectCell("clientTable", 8, 6, "4294967295");
    EXPECT_EQ(cell("clientTable", 8, 1), "401");
}

TEST_F(StatisticsTest, TheLargestTableIsShownToItsLastRowAndFollows) {
    timerTime = 300;
    startOn("lesStats", "rows les 1.1 65535; set les 1.1 row 65535 mac 00:00:00:00:ff:ff");
    expectRows("clientTable", 65535);
    user->clickAt(XtNameToWidget(onPage("clientTable"), "*cells"), 100, 30);
    user->key("End", "Control_L");
    EXPECT_EQ(table("clientTable").activeCell(), (zTableLoc{10, 65535}));
    EXPECT_EQ(cell("clientTable", 1, 65535), "00:00:00:00:ff:ff");
    ctl("set les 1.1 row 65535 controlTx 5; set les 1.1 row 2 controlTx 6");
    expectCell("clientTable", 4, 65535, "5");
    press("clear");
    EXPECT_EQ(cell("clientTable", 4, 65535), "0");
    user->key("Home", "Control_L");
    ctl("set les 1.1 row 2 controlTx 8");
    expectCell("clientTable", 4, 2, "2");
    ctl("rows les 1.1 1");
    expectRows("clientTable", 1);
}

// ---- LECS ----

TEST_F(StatisticsTest, TheLecsShowsWhatTheDriverSays) {
    startOn("lecsStats");
    set("lecs 1",
        "state 4; address {}; elanType 2; etherMtu 3; tokenRingMtu 9; registered 256; "
        "validRequests 4294967295; invalidRequests 21; rejected 22; made 23; open 24",
        address);
    const std::string counters =
        "validRequests=4294967295; invalidRequests=21; rejected=22; connectionsMade=23; "
        "connectionsOpen=24";
    const std::string others =
        fmt::format("elanType=Token Ring; etherMtu=9234; tokenRingMtu=XXXX; networkPrefix={}; "
                    "esiSelector={}",
                    prefix, esi);
    expectLooks(counters + "; " + others);
    set("lecs 1", "state 0");
    for (const std::string& part : split(counters + "; " + others))
        expectLooks(part.substr(0, part.find('=') + 1));
    set("lecs 1", "state 4");
    expectLooks(counters);
    press("clear");
    expectZero(counters);
    set("lecs 1", "open 20; validRequests 3");
    expectLooks("connectionsOpen=4294967292; validRequests=4; rejected=0; " + others);
    EXPECT_EQ(user->tooltipOf(onPage("regLamp")), "LECS Registration: registered, state 1");
    set("lecs 1", "registered 0");
    expectLooks("regLamp=unlit");
    EXPECT_EQ(user->tooltipOf(onPage("regLamp")), "LECS Registration: not registered, state 0");
}

// ---- 1577 ----

TEST_F(StatisticsTest, ClassicalIpShowsWhatTheDriverSays) {
    startOn("ip1577Stats", "rows ip 1 7");
    set("ip 1", "state 5; tx1 1; tx2 20; txDrop1 3; txDrop2 40; txDrop3 500; rx1 2147483647; rx2 6; rx3 70");
    for (int i = 1; i <= 9; ++i) set("ip 1", "rxDrop{} {}", i, 1 << i);
    const char* const kinds[] = {"1", "65537", "0", "2", "0", "0", "0"};
    for (int row = 1; row <= 7; ++row)
        set(fmt::format("ip 1 row {}", row),
            "state {0}; kind {1}; vci {2}; txPackets 10{3}; rxPackets 20{3}; ip 10.0.255.{3}; "
            "address {4}",
            row - 1, kinds[row - 1], row == 7 ? 65535 : 30 + row, row, address);
    const std::string counters = "rxPackets=-2147483573; txPackets=21; rxDropped=1022; txDropped=543";
    expectLooks("stateLamp=lit; " + counters);
    const char* const states[] = {
        "Unused MAC entry",           "Waiting for VCC connection", "Active", "Waiting for ARP response",
        "Waiting for InARP response", "Reverifying connection",     "XXXX"};
    const auto lines = [&](const char* packets) {
        Names result{"|IP Address|VPI/VCI|State|Tx Packets|Rx Packets|Network Prefix|ESI/Selector"};
        for (int row = 1; row <= 7; ++row)
            result.push_back(fmt::format("{0}|10.0.255.{0}|  0/{1:4}|{2}|", row, row == 7 ? -1 : 30 + row,
                                         states[row - 1]) +
                             fmt::format(fmt::runtime(packets), row) +
                             (row == 1 ? fmt::format("|{}|{}", prefix, esi)
                                       : "|   PVC Connection                     |   PVC Connection   "));
        return result;
    };
    expectTable("connectionTable", lines("10{0}|20{0}"));
    press("clear");
    EXPECT_EQ(tableLines("connectionTable"), lines("0|0"));
    expectZero(counters);
    set("ip 1", "rxDrop5 33; txDrop2 0; row 7 rxPackets 206");
    expectLooks("rxDropped=1; txDropped=-40");
    expectCell("connectionTable", 5, 7, "4294967295");
}

TEST_F(StatisticsTest, ConnectionsWithOneVciShowZeroAtOnceAndCountFromTheLastOne) {
    timerTime = 60000;
    startOn("ip1577Stats", "rows ip 1 2");
    for (const int row : {1, 2}) set(fmt::format("ip 1 row {}", row), "vci 33; txPackets 10{}", row);
    press("clear");
    EXPECT_EQ(cell("connectionTable", 4, 1) + cell("connectionTable", 4, 2), "00");
    timerTime = period;
    EXPECT_EQ(asked(), nothing) << "a new refresh rate is that of the next page";
    turnTo("lecsStats");
    turnTo("ip1577Stats");
    expectCell("connectionTable", 4, 1, "4294967295");
    EXPECT_EQ(cell("connectionTable", 4, 2), "0");
}
