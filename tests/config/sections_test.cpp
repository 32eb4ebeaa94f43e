// What the section engine finds, gives and changes.
#include "config/pdf_io.h"
#include "tests/support/temproot.h"

using namespace std::string_literals;

namespace {

constexpr const char* file = "/etc/atm/tvconf";
constexpr int readFailed = -1, valueEmpty = 1;

std::string printed(const auto& action) {
    testing::internal::CaptureStdout();
    action();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

struct Sections : testing::Test {
    TempRoot root;

    // The text of a key, or "<" result ">".
    std::string read(std::string_view content, std::string_view path, std::string_view key) const {
        root.write(file, content);
        SectionHandle* handle = OpenSection(file, path, 0);
        if (!handle) return "<no section>";
        std::array<char, 80> text{};
        const int result = ReadKey(handle, key, text.data(), keyString, text.size());
        CloseSection(handle);
        return result == 0 ? text.data() : result == valueEmpty ? "<empty>" : "<missing>";
    }

    // The errno of a refused write (0: written), the file is then committed. A text in memory becomes the
    // same.
    int write(std::string_view content, std::string_view path, std::string_view key,
              std::string value) const {
        std::string text(content);
        SectionIndex index;
        const int inMemory = write(OpenSection(text, index, file, path, sectionForWriting), key, value);
        root.write(file, content);
        const int error = write(OpenSection(file, path, sectionForWriting), key, value);
        EXPECT_EQ(inMemory, error);
        EXPECT_EQ(text, root.read(file));
        return error;
    }
    static int write(SectionHandle* handle, std::string_view key, std::string value) {
        if (!handle) return errno;
        const int error =
            WriteKey(handle, key, value.data(), keyString, static_cast<int>(value.size()) + 1) == 0 ? 0
                                                                                                    : errno;
        EXPECT_EQ(CloseSection(handle), 0);
        return error;
    }
};

}  // namespace

TEST_F(Sections, KeysAreFound) {
    const struct {
        const char *content, *path, *key, *expected;
    } cases[] = {
        {"[A\nk = 5#x\n]\n", "/A", "k", "5#x"},
        {"[A\nk = 5 #x\n]\n", "/A", "k", "5"},
        {"[A # [B\n# ] ]\nk\t=\t5\n]\n", "/A", "k", "5"},
        {"[A\n\t[LEC = 0\nk =7\n]\n]\n", "/A/LEC0", "k", "7"},
        {"[A\n\t[LEC0\nk =7\n]\n]\n", "/A/LEC0", "k", "7"},
        {"[A\n[B\n]\nk = 1\n]\n", "/A", "k", "<missing>"},   // behind a nested section
        {"[A\na = k = 3\nk = 1\n]\n", "/A", "k", "3"},       // a value can stand for a key
        {"[A\na = k \nk = 1\n]\n", "/A", "k", "<missing>"},  // likewise, without a '=' on its line
        {"[A\nk # = 3\n]\n", "/A", "k", "<missing>"},        // '=' within a comment
        {"[A\nk\nkk = 2\nK = 3\n]\n", "/A", "k", "<missing>"},
        {"[A\nk =\nj = 3\n]\n", "/A", "k", "<empty>"},
        {"[A\r\nk =\r\nj = 3\r\n]\r\n", "/A", "k", "<empty>"},
        {"[A\r\nk = 3\r\n]\r\n", "/A", "k", "3"},
        {"[A\nk = 5", "/A", "k", "5"},  // neither line end nor closing
        {"[A\nk =", "/A", "k", "<empty>"},
        {"[A x = 0\n]\n[A\nk = 5\n]\n", "/A", "k", "5"},  // syntax error in the first
        {"[A\n]\n", "/B", "k", "<no section>"},
    };
    for (const auto& c : cases) EXPECT_EQ(read(c.content, c.path, c.key), c.expected) << c.content;
}

TEST_F(Sections, ValuesOfEveryType) {
    root.write(
        file,
        "[A\nn = -300\nlarge = 99999999999\nhex = 0020480axy\nname = engineering\nip = 192.168.1.2\n]\n");
    SectionHandle* handle = OpenSection(file, "/A", 0);
    ASSERT_TRUE(handle);
    const auto value = [handle]<class Value>(std::string_view key, int type, Value read) {
        EXPECT_EQ(ReadKey(handle, key, &read, type, sizeof read), 0) << key;
        return read;
    };
    EXPECT_EQ(value("n", keyInt8, std::int8_t{}), static_cast<std::int8_t>(-300));
    EXPECT_EQ(value("n", keyInt16, std::int16_t{}), -300);
    EXPECT_EQ(value("n", keyInt32, std::int32_t{}), -300);
    EXPECT_EQ(value("large", keyLong, std::int32_t{}), 0x7fffffff);
    std::int32_t number = 0;
    EXPECT_EQ(ReadKey(handle, "n", &number, 8, 4), readFailed) << "no such type";

    auto bytes = value("hex", keyBytes, std::array<std::uint8_t, 6>{1, 2, 3, 4, 5, 6});
    EXPECT_THAT(bytes, testing::ElementsAre(0, 0x20, 0x48, 0x0a, 5, 6));
    auto ip = value("ip", keyIp, std::array<std::uint8_t, 4>{});
    std::array<char, 8> name{};
    EXPECT_THAT(printed([&] { name = value("name", keyString, name); }), testing::HasSubstr("name"));
    EXPECT_STREQ(name.data(), "enginee");
    std::array<char, 16> text{};
    EXPECT_STREQ((WriteConvert(ip.data(), text.data(), keyIp, 4), text.data()), "192.168.1.2");
    text.fill('\0');
    EXPECT_STREQ((WriteConvert(bytes.data(), text.data(), keyBytes, 4), text.data()), "0020480a");
    EXPECT_EQ(WriteConvert(bytes.data(), text.data(), keyBytes, 0), text.data());
    CloseSection(handle);
}

TEST_F(Sections, OnlyTheValueChanges) {
    const std::string longLine = "k = 1 #" + std::string(119, 'c') + "\n",
                      full = "k = 1 #" + std::string(118, 'c') + "\n";
    const std::string twoPieces = "k = 1 #" + std::string(130, 'c') + "[\n";
    const struct {
        std::string line, text, after;
        int error;
    } cases[] = {
        {"Enabled = 1  # on\n", "0", "Enabled = 0  # on\n", 0},
        {"k = 5#x\n", "77", "k = 77 #x\n", 0},
        {"k =\n", "sales", "k = sales\n", 0},
        {"k = \n", "sales", "k =  sales\n", 0},
        {"k =# c\n", "sales", "k = sales # c\n", 0},
        {"k = \n", "", "k = \n", 0},
        {"k = old\n", "", "k = \n", 0},
        {"k = a word\n", "", "", EINVAL},  // which would become the value
        {"k = 1\r\n", "22", "k = 22\r\n", 0},
        {"k = 1\n", std::string(63, 'v'), "k = " + std::string(63, 'v') + "\n", 0},
        {"k = 1\n", std::string(64, 'v'), "", EINVAL},
        {"k = 1\n", "a b", "", EINVAL},
        {"k = 1\n", "a#b", "", EINVAL},
        {"k = 1\n", "a]", "", EINVAL},
        {"k = 1\n", "a~", "", EINVAL},
        {"k = 1\n", "j=7", "", EINVAL},    // would be found for the key behind it
        {"k = 1 # c\n", "j", "", EINVAL},  // likewise
        {"k = 1 # c\n", "i=7", "k = i=7 # c\n", 0},
        {longLine, "2", "k = 2" + longLine.substr(5), 0},
        {longLine, "22", "", EMSGSIZE},
        {full, "22", "k = 22" + full.substr(5), 0},
        {twoPieces, "22", "", EMSGSIZE},
        {twoPieces, "2", "k = 2" + twoPieces.substr(5), 0},
        {"x = 1\n", "2", "", ENOENT},
    };
    for (const auto& c : cases) {
        const std::string key = c.line.substr(0, c.line.find(' ')) == "Enabled" ? "Enabled" : "k";
        const std::string head = "# \0\0head\n"s + std::string(300, 'x') + "\n[A\n[B\n",
                          tail = "j = 3 # ]\n]\n# no end "s + std::string(500, '\0');
        const std::string before = head + c.line + tail;
        int error = 0;
        const std::string lines = printed([&] { error = write(before, "/A/B", key, c.text); });
        EXPECT_EQ(error, c.error) << c.line;
        EXPECT_EQ(lines.find("Of " + key) != std::string::npos, error != 0 && error != ENOENT) << lines;
        EXPECT_EQ(root.read(file), c.error ? before : head + c.after + tail) << c.line;
    }
    EXPECT_EQ(write("[A\nk = 1]\n", "/A", "k", "2"), EINVAL);  // the bracket closes the section
    EXPECT_EQ(root.read(file), "[A\nk = 1]\n");
    // Of two sections with the same path the first, and of a section what stands before its inner ones.
    EXPECT_EQ(write("[A\nk = 1\n[B\n]\nk = 1\n]\n[A\nk = 1\n]\n", "/A", "k", "2"), 0);
    EXPECT_EQ(root.read(file), "[A\nk = 2\n[B\n]\nk = 1\n]\n[A\nk = 1\n]\n");
    EXPECT_EQ(write("[A\nk = 1\n\0]\n"s, "/A", "k", "2"), EILSEQ);
    EXPECT_EQ(root.read(file), "[A\nk = 1\n\0]\n"s);
    EXPECT_EQ(root.temporaryCopies(), 0);
}

TEST_F(Sections, TheDataAreaIsAHardLimit) {
    const auto content = [](std::size_t fill) {  // data of `fill` characters
        std::string lines = "k = 1\n";
        while (lines.size() + 52 < fill) lines += "#" + std::string(50, 'c') + "\n";
        return "[A\n" + lines + "#" + std::string(fill - lines.size() - 4, 'c') + "\n]\n";
    };
    EXPECT_EQ(read(content(3555), "/A", "k"), "1");
    EXPECT_EQ(write(content(3555), "/A", "k", "2"), 0);
    EXPECT_EQ(write(content(3555), "/A", "k", "22"), EFBIG);
    EXPECT_EQ(printed([&] { EXPECT_EQ(read(content(3556), "/A", "k"), "<missing>"); }),
              "ReadSectData: Buffer Exceeded\n");
    EXPECT_EQ(write(content(3556), "/A", "k", "2"), EFBIG);
    EXPECT_EQ(root.read(file), content(3556));

    root.write(file, "[A\n]\n");
    SectionHandle* handle = OpenSection(file, "/A/B", sectionForWriting);
    ASSERT_TRUE(handle);
    char text[] = "0123456789012345678901234567890123456789";
    int written = 0;
    while (WriteKey(handle, "key" + std::to_string(written), text, keyString, sizeof text) == 0) ++written;
    EXPECT_EQ(errno, EFBIG);
    CloseSection(handle);
    EXPECT_EQ(read(root.read(file), "/A/B", "key" + std::to_string(written - 1)), text);
}

TEST_F(Sections, ASectionIsCreatedAsTheLastChild) {
    const std::string parent =
        "[Adapter0\n\tInterruptNumber = 11 # " + std::string(200, 'c') + "\n\t[LEC0\n\t\tk = 1 # ]\n\t]\n";
    root.write(file, parent + "]\n# end\n");
    SectionHandle* handle = OpenSection(file, "/Adapter0/LEC1", sectionForWriting);
    ASSERT_TRUE(handle);
    std::int32_t number = 1;
    char name[] = "engineering", none[] = "", wrong[] = "a b", other[] = "Mfs=3";
    EXPECT_EQ(WriteKey(handle, "Enabled", &number, keyLong, 4), 0);
    EXPECT_EQ(WriteKey(handle, "ThisKeyIsLongerThanTheColumn", name, keyString, sizeof name), 0);
    EXPECT_EQ(WriteKey(handle, "Empty", none, keyString, 1), -1);
    EXPECT_EQ(WriteKey(handle, "Refused", wrong, keyString, 4), -1);
    EXPECT_EQ(WriteKey(handle, "Other", other, keyString, 6), 0);
    EXPECT_EQ(WriteKey(handle, "Mfs", &number, keyLong, 4), -1);  // would be found within the value above
    EXPECT_EQ(WriteKey(handle, "Enabled", &(number = 0), keyLong, 4), 0);
    EXPECT_EQ(CloseSection(handle), 0);
    EXPECT_EQ(root.read(file),
              parent + "\t[LEC1\n\t\tEnabled\t\t\t= 0\n\t\tThisKeyIsLongerThanTheColumn\t= engineering\n"
                       "\t\tEmpty\t\t\t= \n\t\tOther\t\t\t= Mfs=3\n\t]\n]\n# end\n");
    const std::string same = root.read(file);
    CloseSection(OpenSection(file, "/Adapter0/LES0", sectionForWriting));  // nothing written
    EXPECT_EQ(root.read(file), same);
    EXPECT_EQ(root.temporaryCopies(), 0);
}

TEST_F(Sections, WhereNothingCanBeCreated) {
    const struct {
        const char *content, *path;
        int error;
    } cases[] = {
        {"[A\n]\n", "/B", ESRCH},
        {"[A\n]\n", "/B/C", ESRCH},
        {"", "/A/B", ESRCH},
        {"[A ]\n", "/A/B", EINVAL},
        {"[A\n[C\n] ]\n", "/A/B", EINVAL},
        {"[A\nk = 1 ]\n", "/A/B", EINVAL},
        {"[A\n", "/A/B", EINVAL},
        {"[A\n]\n", "/A/", EINVAL},
        {"[A\n]\n", "/A/b]", EINVAL},
        {"[A [C\n]\n", "/A/B", EINVAL},
        {"[A\n[C x\n]\n]\n", "/A/B", EINVAL},
        {"[x/y\n]\n[A\n]\n", "/x/A/B", EINVAL},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(write(c.content, c.path, "k", "1"), c.error) << c.content << c.path;
        EXPECT_EQ(root.read(file), c.content);
    }
    EXPECT_EQ(root.temporaryCopies(), 0);
    const std::string longest(127, 'n');
    EXPECT_EQ(printed([&] { read("[A\n]\n", "/" + longest, "k"); }),
              "SectNameFwd: Section Name Exceeds Buffer\n");
    EXPECT_EQ(printed([&] { read("[" + longest.substr(1) + "\n]\n", "/A", "k"); }), "");
    EXPECT_EQ(printed([&] { read("[A\n[" + longest.substr(2) + "\n]\n", "/B", "k"); }),
              "SectNameFwd: Section Name Exceeds Buffer\n");
    EXPECT_EQ(printed([&] { read("\n[A b\n", "/B", "k"); }), "SectNameFwd: syntax error @ line 2\n");
}

TEST_F(Sections, OneCopyAtATimeAndNoneAfterAbandoning) {
    root.write(file, "[A\nk = 1\n]\n");
    SectionHandle* handle = OpenSection(file, "/A", sectionForWriting);
    ASSERT_TRUE(handle);
    EXPECT_EQ(root.temporaryCopies(), 1);
    EXPECT_EQ(OpenSection(file, "/A", sectionForWriting), nullptr);
    EXPECT_EQ(errno, EBUSY);
    char text[] = "2";
    EXPECT_EQ(WriteKey(handle, "k", text, keyString, 2), 0);
    AbandonSections();
    EXPECT_EQ(root.temporaryCopies(), 0);
    EXPECT_EQ(CloseSection(handle), 0);
    EXPECT_EQ(CloseSection(nullptr), 0);
    EXPECT_EQ(root.read(file), "[A\nk = 1\n]\n");
}
