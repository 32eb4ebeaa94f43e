#include "platform/safetext.h"

using namespace platform;

TEST(SafeText, EscapesAreAsciiAndCanBeUndone) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    all += "\\x41 \\\\x41 \\";
    const std::string safe = escaped(all);
    for (const char c : safe) EXPECT_TRUE(c >= ' ' && c <= '~');
    EXPECT_EQ(unescaped(safe), all);
    EXPECT_EQ(escaped("a\n\\\xe9\x7f"), "a\\x0a\\\\\\xe9\\x7f");
    for (const char* asItStands : {"\\", "\\x", "\\x4", "\\x4g", "\\x-1", "\\n", "a\\x+1b"})
        EXPECT_EQ(unescaped(asItStands), asItStands);
}

TEST(SafeText, AFieldCannotForgeAnother) {
    const struct {
        std::string value, field;
    } rows[] = {
        {"adapter1/lec2.mtu", "adapter1/lec2.mtu"},
        {"", R"("")"},
        {"a b", R"("a b")"},
        {"x=y", R"("x=y")"},
        {"\" result=ok", R"("\" result=ok")"},
        {"a\nb\\", R"("a\x0ab\\")"},
        {std::string(240, 'a'), std::string(240, 'a')},
        {std::string(241, 'a'), '"' + std::string(236, 'a') + R"(\...")"},
        {std::string(234, 'a') + "\n\n", '"' + std::string(234, 'a') + R"(\...")"},
    };
    for (const auto& [value, field] : rows) {
        EXPECT_EQ(fieldValue(value), field);
        EXPECT_LE(fieldValue(value).size(), longestField + 2);
    }
}
