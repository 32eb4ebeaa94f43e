#include "model/ui_types.h"

#include <iomanip>

namespace {

template <typename Value> Value from(std::string_view text) {
    Value value;
    value = text;
    return value;
}

template <typename Value> std::string streamed(const Value& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

// A text that is too short for a value leaves it as it was.
template <typename Value> void expectKept(Value value, const char* shorter) {
    const Value before = value;
    std::istringstream stream(shorter);
    stream >> value;
    EXPECT_TRUE(stream.fail()) << shorter;
    EXPECT_EQ(value, before) << shorter;
}

}  // namespace

TEST(MacAddress, Texts) {
    const char* const cases[][2] = {{"00:A0:3E:00:00:01", "00:a0:3e:00:00:01"},
                                    {"0:a0:3e:0:0:1", "00:a0:3e:00:00:01"},
                                    {"00-a0 3e.00/00x01", "00:a0:3e:00:00:01"},
                                    {" 1: 2: 3: 4: 5: 6", "01:02:03:04:05:06"},
                                    {"100:1ff:0:0:0:fffff", "00:ff:00:00:00:ff"},
                                    {"1:2", "01:02:00:00:00:00"},
                                    {"", "00:00:00:00:00:00"}};
    for (const auto& [text, shown] : cases)
        EXPECT_STREQ(from<macAddress>(text).GetFMacAddress(), shown) << text;
}

TEST(MacAddress, StreamsBackAndLeavesTheStreamInDecimal) {
    std::stringstream stream;
    stream << std::left << from<macAddress>("0a:b0:c0:d0:0e:0f") << ' ' << 16 << std::setw(4) << 7;
    EXPECT_EQ(stream.str(), "0ab0c0d00e0f 16   7");
    macAddress back;
    std::istringstream("0A b0C0d00 e0f") >> back;
    EXPECT_EQ(back, from<macAddress>("0a:b0:c0:d0:0e:0f"));
    expectKept(back, "0ab0c0d00e0");
}

TEST(MacAddress, Hash) {
    EXPECT_EQ(from<macAddress>("00:a0:3e:00:00:01").hash(), 16777278U);
    EXPECT_EQ(myMacHashFunction(from<macAddress>("ff:ff:3e:00:00:01")), 16777278U);
    EXPECT_EQ(from<macAddress>("0:0:1:2:3:84").hash(), 0x84030201U);
}

TEST(EsiSelector, Texts) {
    const auto value = from<esiSelector>("00:A0:3E:00:00:01-00");
    EXPECT_EQ(value.bytes(), (esiSelector::Bytes{0, 0xa0, 0x3e, 0, 0, 1, 0}));
    EXPECT_STREQ(value.GetF2EsiSelector(), "00:a0:3e:00:00:01-00");
    EXPECT_STREQ(value.GetFEsiSelector(), "00a03e000001/00");
    EXPECT_STREQ(from<esiSelector>(" 11:22: 33:44:55:66-01").GetF2EsiSelector(), "11:22:33:44:55:66-01");
    EXPECT_STREQ(from<esiSelector>("11:22:33").GetF2EsiSelector(), "11:22:33:00:00:00-00")
        << "stops at the end";

    std::stringstream stream;
    stream << from<esiSelector>("0a:b0:c0:d0:0e:0f-9c") << ' ' << 16;
    EXPECT_EQ(stream.str(), "0ab0c0d00e0f/9c 16");
    esiSelector back;
    stream >> back;
    EXPECT_STREQ(back.GetFEsiSelector(), "0ab0c0d00e0f/9c");
    expectKept(back, "112233445566/0");
}

TEST(AtmAddress, Texts) {
    const atmAddress none;
    EXPECT_EQ(none.digits(), "4" + std::string(39, '0'));
    auto value = from<atmAddress>("47:00:79:00:00:00:00:00:00:00:00:00:00 00:A0:3E:00:00:01-00 ff");
    EXPECT_EQ(value.digits(), "4700790000000000000000000000A03E00000100") << "case kept, stops at 40";
    EXPECT_STREQ(value.GetNetworkPrefix(), "47007900000000000000000000");
    EXPECT_STREQ(value.GetESISelector(), "00A03E00000100");
    EXPECT_STREQ(value.GetFNetworkPrefix(), "47:00:79:00:00:00:00:00:00:00:00:00:00");
    EXPECT_STREQ(value.GetFESISelector(), "00:A0:3E:00:00:01-00");
    EXPECT_EQ(streamed(value), "47:00:79:00:00:00:00:00:00:00:00:00:00:00:A0:3E:00:00:01:00");
    value = "zz5-1g";
    EXPECT_EQ(value.digits(), "5100790000000000000000000000A03E00000100") << "the rest stays";
}

TEST(IpAddress, Texts) {
    const char* const cases[][2] = {{"192.168.1.10", "192.168.1.10"},
                                    {"192.168.001.010", "192.168.1.10"},
                                    {"256.300.0.1", "0.44.0.1"},
                                    {"1 2 3 4", "1.2.3.4"},
                                    {"10.1", "10.1.0.0"},
                                    {"000.000.000.000", "0.0.0.0"},
                                    {"9.99.100.8", "9.99.100.8"}};
    for (const auto& [text, shown] : cases)
        EXPECT_STREQ(from<ipAddress>(text).GetFIPAddress(), shown) << text;
    EXPECT_EQ(streamed(from<ipAddress>("10.0.0.255")), "10.0.0.255");
    ipAddress value;
    std::istringstream("192.168.010.1") >> value;
    EXPECT_STREQ(value.GetFIPAddress(), "192.168.10.1");
    expectKept(value, "1.2.3");
}
