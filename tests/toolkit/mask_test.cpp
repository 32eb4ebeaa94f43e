#include "toolkit/controls/mask.h"

#include "model/masks.h"

#include <regex>

namespace {

struct Field {
    const char* mask;
    const char* prefix;  // what the picture says, as a regular expression, in either case
    std::vector<std::string> texts;
};
const Field fields[] = {
    {macAddressMask, "([\\da-f]{2}:){0,5}[\\da-f]{0,2}", {"", "0", "00:", "00:A0:3", "00:A0:3E:12:34:56"}},
    {esiSelectorMask,
     "([\\da-f]{2}:){0,5}[\\da-f]{0,2}|([\\da-f]{2}:){5}[\\da-f]{2}-[\\da-f]{0,2}",
     {"", "0a:1", "00:a0:3e:00:00:01-", "00:a0:3e:00:00:01-7", "11:22:33:44:55:66-01"}},
    {networkPrefixMask,
     "(?!0)([\\da-f]{2}:){0,12}[\\da-f]{0,2}",
     {"", "4", "47:", "47:00:7", "47:00:79:00:00:00:00:00:00:00:00:00:1f"}},
    {ipAddressMask,
     "([0-9]{0,3}\\.){0,3}[0-9]{0,3}",
     {"", "1", "192.", "10.1", "1.2.3.4", "10.1..", "000.000.000.000", "255.255.255.255"}},
    {elanNameMask, "[!\"$-Z\\\\^-z]{0,31}", {"", "sales", "abcdefghijklmnopqrstuvwxyz01234"}},
    {fourDigitsMask, "[0-9]{0,4}", {"", "7", "1500", "012"}},
};
const char* const pastes[] = {"12",
                              "ab:cd",
                              "00:a0:3e:00:00:01-07:99:99:99",
                              "47007900000000000000000000000000ff",
                              "xyz",
                              "192.168.1.10",
                              "1.2.3.4.5",
                              " 12\n",
                              "1 2",
                              "99999",
                              "a-very-long-name-of-an-emulated-lan"};

// Every printable key at every position and over selections of up to two characters, every paste over every
// selection, Backspace and Delete: what is accepted is a prefix, with its caret within, and so is what it is
// completed to.
TEST(Picture, EveryEditOfAPrefixGivesAPrefix) {
    std::size_t accepted = 0, refused = 0;
    for (const Field& field : fields) {
        const zPicture picture(field.mask);
        const std::regex expression(field.prefix, std::regex::icase);
        std::set<std::string> known;  // prefixes
        const auto isPrefix = [&](const std::string& text) {
            return known.contains(text) || (std::regex_match(text, expression) && known.insert(text).second);
        };
        const auto walk = [&](const std::string& text, std::size_t start, std::size_t end,
                              std::string_view keys, std::size_t caret) {
            const auto edit = picture.edit(text, start, end, keys, caret);
            ++(edit ? accepted : refused);
            if (!edit) return;
            ASSERT_TRUE(isPrefix(edit.text) && edit.caret <= edit.text.size())
                << '"' << text << "\" " << start << ".." << end << " \"" << keys << "\" gives \"" << edit.text
                << "\" at " << edit.caret;
            const std::string whole = picture.completed(edit.text);
            ASSERT_TRUE(isPrefix(whole)) << edit.text << " completed: " << whole;
            if (!picture.isAddress() || edit.text.empty()) return;
            ASSERT_EQ(whole.size(), picture.completed("1").size());
            ASSERT_EQ(picture.format(picture.bare(edit.text)), edit.text);
        };
        for (const std::string& text : field.texts) {
            ASSERT_TRUE(isPrefix(text)) << text;
            for (std::size_t end = 0; end <= text.size(); ++end)
                for (std::size_t start = 0; start <= end; ++start) {
                    walk(text, start, end, "", start);
                    for (const char* paste : pastes) walk(text, start, end, paste, end);
                    for (char c = ' '; c <= '~' && end - start <= 2; ++c)
                        walk(text, start, end, std::string(1, c), end);
                }
        }
    }
    EXPECT_GT(accepted, 10'000u);
    EXPECT_GT(refused, 10'000u);
}

// A caret is '|', a selection stands between '{' and '}'.
struct Step {
    const char* mask;
    const char* before;
    const char* keys;  // '<' Backspace, '>' Delete; a paste when it begins with "p:"
    const char* after;
};
const Step steps[] = {
    // Fixed characters come by themselves.
    {esiSelectorMask, "|", "11223344556601", "11:22:33:44:55:66-01|"},
    {ipAddressMask, "|", "192168001010", "192.168.001.010|"},
    {ipAddressMask, "|", "10..1", "10.1|"},
    {networkPrefixMask, "|", "047", "47:|"},
    // A separator behind a single digit puts a zero before it; where it stands already it does nothing.
    {macAddressMask, "|", "8:0:20:1:2:3", "08:00:20:01:02:3|"},
    {esiSelectorMask, "|", "0:a0:3e:0:0:1-7", "00:a0:3e:00:00:01-7|"},
    {esiSelectorMask, "00:a0:3e:00:00:01-7|", "-", "00:a0:3e:00:00:01-7|"},
    {networkPrefixMask, "|", "47:0:5:", "47:00:05:|"},
    {networkPrefixMask, "4|", ":", "4|"},  // a prefix does not begin with 0
    {macAddressMask, "00:1|1:22", ":", "00:1|1:22"},
    {macAddressMask, "00:|1", ":", "00:|1"},
    {macAddressMask, "00|:1", ":", "00:|1"},
    // Deleting.
    {macAddressMask, "00:|", "<<", "0|"},
    {macAddressMask, "00|:a0:3e", ">", "00:|a0:3e"},
    {macAddressMask, "1|2:34:56:78:9a:bc", ">>>", "1|5:67:89:ab:c"},
    {networkPrefixMask, "4{7:0}0:79", ">", "4|0:79:"},
    {networkPrefixMask, "|47:00:79", ">>", "|70:07:9"},  // not the second: a prefix does not begin with 0
    {ipAddressMask, "19{2.16}8.1.1", ">", "19|.8.1.1"},
    // Selections and full fields.
    {macAddressMask, "00:{a0}:3e:12:34:56", "bc", "00:bc:|3e:12:34:56"},
    {macAddressMask, "00:{a0}:3e:12:34:56", ":", "00:{a0}:3e:12:34:56"},
    {ipAddressMask, "0|00.000.000.000", "1", "0|00.000.000.000"},
    {ipAddressMask, "{000.000}.000.000", "10.192", "10.192|.000.000"},
    {elanNameMask, "abcdefghijkl|mnopqrstuvwxyz01234", "x", "abcdefghijkl|mnopqrstuvwxyz01234"},
    // Pastes.
    {macAddressMask, "{00:a0:3e:12:34:56}", "p:00:a0:3e:99:99:99:99", "{00:a0:3e:12:34:56}"},
    {fourDigitsMask, "{1500}", "p:70000", "{1500}"},
    {macAddressMask, "|", "p: 00a03e123456\n", "00:a0:3e:12:34:56|"},
    {elanNameMask, "a|z", "p:two words", "a|z"},
    // What never fitted stays.
    {macAddressMask, "zz:00:|", "1", "zz:00:1|"},
    {fourDigitsMask, "12345|", "6", "12345|"},
};

std::string walk(const Step& step) {
    std::string text = step.before;
    const auto take = [&](char mark) {
        const std::size_t at = text.find(mark);
        if (at != text.npos) text.erase(at, 1);
        return at;
    };
    std::size_t start = take('|'), end = start;
    if (start == text.npos) start = take('{'), end = take('}');
    const zPicture picture(step.mask);
    const std::string keys = step.keys;
    const bool paste = keys.starts_with("p:");
    for (std::size_t i = 0; i < (paste ? 1 : keys.size()); ++i) {
        std::size_t from = start, to = end, caret = end;
        std::string typed = paste ? keys.substr(2) : std::string(1, keys[i]);
        if (typed == "<" || typed == ">") {
            if (start == end && typed == "<") --from;
            if (start == end && typed == ">") ++to;
            typed.clear();
        }
        if (const auto edit = picture.edit(text, from, to, typed, caret)) {
            text = edit.text;
            start = end = edit.caret;
        }
    }
    if (start == end) return text.insert(start, 1, '|');
    return text.insert(end, 1, '}').insert(start, 1, '{');
}

TEST(Picture, KeysAndPastes) {
    for (const Step& step : steps)
        EXPECT_EQ(walk(step), step.after) << '"' << step.before << "\" \"" << step.keys << '"';
}

TEST(Picture, LackingDigitsAreZeros) {
    EXPECT_EQ(zPicture(macAddressMask).completed("00:a"), "00:a0:00:00:00:00");
    EXPECT_EQ(zPicture(macAddressMask).completed("08:00:20:01:02:3"), "08:00:20:01:02:30");
    EXPECT_EQ(zPicture(macAddressMask).completed("08:00:20:01:02:3", true), "08:00:20:01:02:03");
    EXPECT_EQ(zPicture(esiSelectorMask).completed("00:a0:3e:00:00:01-7", true), "00:a0:3e:00:00:01-07");
    EXPECT_EQ(zPicture(esiSelectorMask).completed("00:a0:3", true), "00:a0:30:00:00:00-00");
    EXPECT_EQ(zPicture(ipAddressMask).completed("10..3"), "10.0.3.0");
    EXPECT_EQ(zPicture(ipAddressMask).completed(""), "0.0.0.0");
    EXPECT_EQ(zPicture(macAddressMask).completed(""), "");
    EXPECT_EQ(zPicture(elanNameMask).completed("x"), "x");
}

}  // namespace
