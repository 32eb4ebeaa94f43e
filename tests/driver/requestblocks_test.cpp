#include "driver/requestblocks.h"
#include "tests/support/scripteddriver.h"

namespace {

atmAddress address(std::string_view digits) {
    atmAddress made;
    made = digits;
    return made;
}
// In the order of the records: the numbers of each record differ from one another where they can.
const atmAddress lecs = address("4700790000000000000000000000a03e00000107");
const AtmLEC client{0, 1, {"engineering"}, 2, 0x12345, 0, 3, lecs, {}, {}, {}};
const AtmLES server{0, {"a-name-of-thirty-one-characters"}, 3, 0, 2, 1, {}, {}};
const AtmLECS settings{0, 2, 3, 4, address("47007900000000000000000000112233445566ff")};
const AtmIP1577 ipClient{0, 1, {"10.1.2.3"}, {"255.255.0.0"}, {"192.168.1.200"}, lecs, {}, {}, {}};
const AtmBridgedPvc bridged{macAddress({0x00, 0xa0, 0x3e, 0x12, 0x34, 0x56}), 100, 1, 1, 155};
const AtmRoutedPvc routed{ipAddress({10, 1, 2, 3}), 0x1234, 1, 1, 155};
const lecs_req mapping = lecs_req::mapping(esiSelector({1, 2, 3, 4, 5, 6, 7}), 5);

const char lecData[] =
    "00 00 00 00  47 00 79 00 00 00 00 00 00 00 00 00 00 00 a0 3e 00 00 01 07  02 00 00 00"
    "65 6e 67 69 6e 65 65 72 69 6e 67 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
    "03 00 00 00  01 00 00 00  45 23 01 00";
const char lesData[] =
    "61 2d 6e 61 6d 65 2d 6f 66 2d 74 68 69 72 74 79 2d 6f 6e 65 2d 63 68 61 72 61 63 74 65 72 73 00"
    "01 00 00 00  03 00 00 00  02 00 00 00  00 00 00 00  00 00 00 00";
const char lecsData[] =
    "47 00 79 00 00 00 00 00 00 00 00 00 00 11 22 33 44 55 66 ff  02 00 00 00  03 00 00 00"
    "04 00 00 00  11 22 33 44 55 66 ff  00  00 00 00 00";
const char mappingData[] =
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  00 00 00 00  00 00 00 00"
    "00 00 00 00  01 02 03 04 05 06 07  00  05 00 00 00";
const char ipData[] = "00 00 00 00  03 02 01 0a  00 00 ff ff  c8 01 a8 c0"
                      "47 00 79 00 00 00 00 00 00 00 00 00 00 00 a0 3e 00 00 01 07  01 00 00 00";
const char bridgedData[] = "00 a0 3e 12 34 56  64 00  01 00  01 00";
const char routedData[] = "0a 01 02 03  34 12  01 00";

// Requests for adapter 2: what goes out, and what the debug log says. The others differ from one of these in
// their type alone, and the windows' tests send them to the simulator.
struct Case {
    const char* trace;
    const char* header;
    const char* data;
    std::function<int(DriverChannel&)> send;
};
#define ON(Block, operation) [](DriverChannel& d) { return Block(d, 2).operation; }
const Case cases[] = {
    {"LEC_INIT", "11 00 01 00 02 03 58 00 58 00 00 00 00 00 ad de", lecData,
     ON(LecRequest, start(3, client))},
    {"LEC_DISABLE", "11 00 02 00 02 03 10 00 10 00 00 00 00 00 ad de", "", ON(LecRequest, stop(3))},
    {"BRDG_PVCADD", "11 00 03 00 02 03 1c 00 1c 00 00 00 00 00 ad de", bridgedData,
     ON(LecRequest, changePvc(3, PvcChange::add, bridged))},
    {"LES_ENABLE", "12 00 01 00 02 07 44 00 44 00 00 00 00 00 ad de", lesData,
     ON(LesRequest, start(7, server))},
    {"LECS_SET_ADDR\n"  // and the mapping's bytes, ten to a line
     "  0  0  0  0  0  0  0  0  0  0\n"
     "  0  0  0  0  0  0  0  0  0  0\n"
     "  0  0  0  0  0  0  0  0  0  0\n"
     "  0  0  1  2  3  4  5  6  7  0\n"
     "  5  0  0  0",
     "13 00 03 00 02 00 3c 00 3c 00 00 00 00 00 ad de", mappingData, ON(lecsRequest, addClient(mapping))},
    {"LECS_DEL_ADDR", "13 00 04 00 01 04 3c 00 3c 00 00 00 00 00 ad de", mappingData,
     ON(lecsRequest, delClient(1, 4, mapping))},
    {"IPATM_INIT", "41 00 01 00 02 00 38 00 38 00 00 00 00 00 ad de", ipData, ON(IpRequest, start(ipClient))},
    {"IPATM_PVCADD", "41 00 04 00 02 00 18 00 18 00 00 00 00 00 ad de", routedData,
     ON(IpRequest, changePvc(PvcChange::add, routed))},
    {"DaiSigDbgTrace", "22 00 03 00 00 00 4c 00 1b 00 00 00 00 00 ad de", "00 00 00 00 00 00 00 00  00 04 01",
     [](DriverChannel& d) { return TraceRequest(d).switchTrace(TraceRequest::ilmi, true); }},
};
#undef ON

TEST(ChangeRequests, EachSendsItsBytesAndIsTraced) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.trace);
        ScriptedDriver driver;
        LogCapture log;
        driver.expect(std::string(c.header) + c.data);
        driver.expectAny().resp(5);
        EXPECT_EQ(c.send(driver.channel()), 0);
        EXPECT_NE(log.take().find(std::string("\n") + c.trace + "\n"), std::string::npos);
        EXPECT_EQ(c.send(driver.channel()), -1);
        EXPECT_NE(log.take().find("Dai Request Failure"), std::string::npos);
    }
}

// One block for request after request: what an earlier one left, in the buffer or by its reply, stays here.
TEST(ChangeRequests, NothingStaleLeaves) {
    ScriptedDriver driver;
    LecRequest block(driver.channel(), 0);
    ByteVector reply(200, 0xff);
    driver.expectAny().data(reply).rows(7).rowMarker(9);
    block.start(1, client);
    driver.expect(std::string("11 00 03 00 00 02 1c 00 1c 00 00 00 00 00 ad de ") + bridgedData).data(reply);
    block.changePvc(2, PvcChange::add, bridged);
    AtmLEC other = client;
    other.elanName = "x";
    driver.expectAny();
    block.start(1, other);
    EXPECT_EQ(hexText(std::span(driver.requests().back()).subspan(16 + 28, 4)), "78 00 00 00");
    EXPECT_EQ(driver.requests().back().size(), 88U);

    TraceRequest trace(driver.channel());
    driver.expectAny().data(reply);
    trace.switchTrace(TraceRequest::signalling, true);
    driver.expect("22 00 03 00 00 00 4c 00 1b 00 00 00 00 00 ad de 00 00 00 00 00 00 00 00 00 02 00");
    trace.switchTrace(TraceRequest::signalling, false);
}

TEST(ChangeRequests, ALecsIsStoppedLoadedAndStartedUnlessLoadingFails) {
    for (const bool loads : {true, false}) {
        ScriptedDriver driver;
        lecs_req request;
        request = settings;
        driver.expect("13 00 02 00 00 00 10 00 10 00 00 00 00 00 ad de").resp(5);  // it did not run
        driver.expect(std::string("13 00 01 00 00 00 3c 00 3c 00 00 00 00 00 ad de ") + lecsData)
            .resp(loads ? 0 : 5);
        if (loads) driver.expect("13 00 05 00 00 00 10 00 10 00 00 00 00 00 ad de");
        EXPECT_EQ(lecsRequest(driver.channel(), 0).enable(request), loads ? 0 : -1);
    }
}

}  // namespace
