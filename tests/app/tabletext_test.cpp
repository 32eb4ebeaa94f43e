// Tables as files: what other programs read of them is what the cells show.
#include "tests/support/temproot.h"
#include "ui/tabletext.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace {

const TableCells cells{{"", "VCI", "a,b", "Name"},
                       {{"1", "  0/  16", "with \"quotes\"", "comma, tab\tand\nline\r\nend"},
                        {"", "", " blanks ", "caf\xc3\xa9"},
                        {"2", "-1", "=1+1", "'"}}};

// What Python's library makes of a file, one cell a line.
std::string readByPython(const TempRoot& root, const char* file, const char* reader) {
    const std::string program = fmt::format("import csv, json\nwith open(\"{}\", newline='') as f:\n"
                                            "    for row in {}:\n        print(ascii(row))\n",
                                            root.at(file).string(), reader);
    root.write("/read.py", program);
    std::FILE* const output = ::popen(("/usr/bin/python3 " + root.at("/read.py").string()).c_str(), "r");
    std::string text;
    for (int c; (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
    ::pclose(output);
    return text;
}

}  // namespace

TEST(TableText, OthersReadWhatTheCellsShow) {
    const TempRoot root;
    const std::string expected = R"(['', 'VCI', 'a,b', 'Name']
['1', '0/  16', 'with "quotes"', 'comma, tab\tand\nline\r\nend']
['', '', 'blanks', 'caf\xe9']
['2', '-1', '=1+1', "'"]
)";
    root.write("/t.CSV", tableText(cells, "/t.CSV"));
    EXPECT_EQ(readByPython(root, "/t.CSV", "csv.reader(f, strict=True)"), expected);
    root.write("/t.json", tableText(cells, "t.json"));
    const std::string typed = R"(['', 'VCI', 'a,b', 'Name']
[1, '0/  16', 'with "quotes"', 'comma, tab\tand\nline\r\nend']
[None, '', 'blanks', 'caf\xe9']
[2, '-1', '=1+1', "'"]
)";
    EXPECT_EQ(readByPython(root, "/t.json", "(lambda t: [t['columns']] + t['rows'])(json.load(f))"), typed);
    EXPECT_EQ(asText(cells).substr(0, 31), "\tVCI\ta,b\tName\n1\t  0/  16\twith \"") << "as shown";
    EXPECT_EQ(tableText({{"a", "b"}, {{"1", "2"}}}, ".csv"), "a\tb\n1\t2\n") << "a name alone is no ending";
}

TEST(TableText, EveryRowIsOne) {
    EXPECT_EQ(asCsv({{"only"}, {{""}, {"x"}}}), "only\r\n\"\"\r\nx\r\n");
    EXPECT_EQ(asJson({{"n"}, {{"\xff"}}}),
              "{\n \"columns\": [\n  \"n\"\n ],\n \"rows\": [\n  [\n   \"\xef\xbf\xbd\"\n  ]\n ]\n}\n");
}

TEST(TableText, ColumnsOfNumbers) {
    const struct {
        std::vector<const char*> cells;
        const char* json;
    } cases[] = {
        {{" 7 ", "4294967295", "-1", "0"}, "[7,4294967295,-1,0]"},
        {{"12.50", "0.125", ""}, "[12.5,0.125,null]"},
        {{"7", "unknown"}, R"(["7","unknown"])"},
        {{"7", "0/  32"}, R"(["7","0/  32"])"},
        {{"7", "007"}, R"(["7","007"])"},  // digits of a name or an address
        {{"7", "1e5"}, R"(["7","1e5"])"},
        {{"1234567890123456"}, R"(["1234567890123456"])"},
        {{"", ""}, R"(["",""])"},
        {{"-", "."}, R"(["-","."])"},
    };
    for (const auto& c : cases) {
        TableCells table{{"n"}, {}};
        for (const char* cell : c.cells) table.rows.push_back({cell});
        nlohmann::json column = nlohmann::json::array();
        const nlohmann::json all = nlohmann::json::parse(asJson(table));
        for (const auto& row : all["rows"]) column.push_back(row[0]);
        EXPECT_EQ(column.dump(), c.json);
    }
}
