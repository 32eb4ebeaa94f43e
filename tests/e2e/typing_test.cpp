// What the fields of the configuration take.
#include "tests/e2e/configurationtest.h"
#include "tests/toolkit/otherclient.h"
#include "ui/fieldmasks.h"

namespace {

using TypingTest = ConfigurationTest;

constexpr const char* wholeAddress = "47.0005.80ff.e100.0000.f21a.26d8.0020d4144ab8.01";
constexpr const char* shownPrefix = "47:00:05:80:ff:e1:00:00:00:f2:1a:26:d8";
constexpr const char* shownEsi = "00:20:d4:14:4a:b8-01";

TEST(FieldMasks, PastedAddressesComeAsTheFieldsShowThemOrNotAtAll) {
    const struct {
        const zFieldMask& field;
        const char* pasted;
        std::string text, partner, refusal;
    } cases[] = {
        {macAddressField, "8:0:20:1:2:3", "08:00:20:01:02:03", "", ""},
        {macAddressField, "8:0:20:1:2", "", "", "A MAC address has 6 bytes; this text has 5."},
        {esiSelectorField, "0020.d414.4ab8/01", shownEsi, "", ""},
        {esiSelectorField, "00-20-d4-14-4a-b8", "00:20:d4:14:4a:b8", "", ""},
        {esiSelectorField, wholeAddress, shownEsi, shownPrefix, ""},
        {esiSelectorField, "20:d4", "", "", "An ESI with its selector has 7 bytes; this text has 2."},
        {networkPrefixField, "47.00.05.80.ff.e1.0.0.0.f2.1a.26.d8", shownPrefix, "", ""},
        {networkPrefixField, wholeAddress, shownPrefix, shownEsi, ""},
        {networkPrefixField, "47.0005", "", "", "A network prefix has 13 bytes; this text has 3."},
        {ipAddressField, "010.1.0.255", "10.1.0.255", "", ""},
        {ipAddressField, "300.1.1.1", "", "", "300 is too large: at most 255."},
    };
    for (const auto& [field, pasted, text, partner, refusal] : cases) {
        const zPasted result = field.paste(pasted);
        EXPECT_EQ(result.text, text) << pasted;
        EXPECT_EQ(result.partner, partner) << pasted;
        EXPECT_EQ(result.refusal, refusal) << pasted;
    }
}

// The message line has room for some 90 letters.
TEST(FieldMasks, ReasonsFitTheMessageLine) {
    for (const zFieldMask* field : {&macAddressField, &esiSelectorField, &networkPrefixField, &ipAddressField,
                                    &elanNameField, &fourDigitsField}) {
        EXPECT_LE(std::string_view("This character cannot stand here: ").size() +
                      std::string_view(field->takes).size(),
                  90U)
            << field->takes;
        EXPECT_LE(std::string_view(field->full).size(), 90U) << field->full;
    }
}

TEST_F(TypingTest, AWholeAddressFillsBothHalvesOnEveryPageThatHasThem) {
    start();
    advSettings = 1;
    const OtherClient other("", wholeAddress);
    configure([&] {
        const std::pair<const char*, int> pages[] = {
            {"lecPage", lesRB}, {"lecsPage", enableCB}, {"ip1577Page", serverCB}};
        for (const auto& [page, on] : pages) {
            turnTo(page);
            if (on == lesRB || !usable(networkPrefixED)) press(on);
            for (const int id : {networkPrefixED, esiSelectorED}) {
                enter(networkPrefixED, "39");
                enter(esiSelectorED, "ff");
                XmProcessTraversal(named(id), XmTRAVERSE_CURRENT);
                user->key("v", "Control_L");
                EXPECT_TRUE(user->until([&] { return text(networkPrefixED) == shownPrefix; })) << page;
                EXPECT_EQ(text(esiSelectorED), shownEsi) << page;
            }
        }
        press(okBTN);
    });
    expectTheFilesHold(dump());
    EXPECT_EQ(std::string(atmDevices.lec[0][0].address.GetFNetworkPrefix()), shownPrefix);
}

TEST_F(TypingTest, TheVciThatIsTypedIsTheOneThatTheDriverGets) {
    bridgedPvcXferBuffer = {};  // the dialog begins with what it was left with
    start();
    told();
    configure([&] {
        inSubDialog(addBTN, "lecPvc", [&] {
            XmProcessTraversal(named(pvcVciED), XmTRAVERSE_CURRENT);
            user->type("200");
            user->key("Return");
        });
        EXPECT_EQ(told(), Names{"lec.pvc-add 0"});
        EXPECT_NE(pvcRows().back().find("| 0 / 200 |"), std::string::npos) << pvcRows().back();
        press(cancelBTN);
    });
}

}  // namespace
