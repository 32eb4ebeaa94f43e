// What the driver reports, as text and as JSON.
#include "tests/support/simulator.h"
#include "tvctl.h"

#include <chrono>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

// The lines that say what a value in JSON says.
void lines(const Json& json, const std::string& where, std::string& text) {
    if (json.is_array()) {
        for (std::size_t i = 0; i < json.size(); ++i) lines(json[i], fmt::format("{}[{}]", where, i), text);
    } else if (json.is_object() && json.contains("code")) {
        const std::string code = fmt::format("state {}", json["code"].get<int>());
        const Json& words = json["text"];
        text += fmt::format("{} = {}\n", where,
                            words.is_null() ? code : fmt::format("{}, {}", words.get<std::string>(), code));
    } else if (json.is_object()) {
        for (const auto& [name, value] : json.items()) {
            const bool service = value.is_object() && !value.contains("code");
            lines(value, fmt::format("{}{}{}", where, where.empty() ? "" : service ? "/" : ".", name), text);
        }
    } else {
        const std::string value = json.is_null()     ? "unknown"
                                  : json.is_string() ? json.get<std::string>()
                                                     : json.dump();
        text += value.empty() ? where + " =\n" : fmt::format("{} = {}\n", where, value);
    }
}

struct Driver : SampleRoot {
    Driver() { simulator.ctl("clock step 100"); }
    Simulator simulator;
};

}  // namespace

TEST(State, TextAndJsonNameTheSameValues) {
    Driver driver;
    driver.simulator.ctl("rows lecs 1 0");
    const struct {
        const char* command;
        const char* path;
        int status;
        const char* line;  // one of the text
    } cases[] = {
        {"clock", "", 0, "adapter1/lec1.state = Joined, state 6"},
        {"clock", "adapter4 adapter2/ip adapter2/ip", 0, "adapter4.lossOfSignal = false"},
        {"set lec 1.2 state 77", "adapter1/lec2", 0, "adapter1/lec2.state = state 77"},
        {"set lec 1.2 mtu 9", "adapter1/lec2", 0, "adapter1/lec2.mtu = code 9"},
        {"set lec 1.2 elanName a\x1b[31m\"\xff\\", "adapter1/lec2", 0,
         "adapter1/lec2.elanName = a\\x1b[31m\"\\xff\\\\"},
        {"set lec 1.2 state 0", "adapter1/lec2", 0, "adapter1/lec2.state = no such client, state 0"},
        {"fault les.table every resp 9", "adapter1", 4, "adapter1/les1.clients = unknown"},
        {"fault lec.stats every silent", "adapter1", 3, "adapter1/les1.clients = unknown"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.command);
        driver.simulator.ctl(c.command);
        const std::string words = fmt::format("--timeout 1 show --state {}", c.path);
        const Said text = tvctl(words);
        const Said said = tvctl(words + " --json");
        EXPECT_EQ(text.status, c.status);
        EXPECT_EQ(said.status, c.status);
        Json json = Json::parse(said.out);
        EXPECT_EQ(json["format"], 1);
        EXPECT_EQ(json.contains("error"), c.status != 0);
        if (c.status != 0) {
            EXPECT_EQ(json["error"]["code"], c.status);
            EXPECT_EQ(fmt::format("tvctl: {}\n", json["error"]["message"].get<std::string>()), text.err);
        }
        json.erase("format");
        json.erase("error");
        std::string expected;
        lines(json, "", expected);
        EXPECT_EQ(text.out, expected);
        EXPECT_NE(('\n' + text.out).find(fmt::format("\n{}\n", c.line)), std::string::npos) << text.out;
    }
}

TEST(State, ValuesHaveTheirTypes) {
    Driver driver;
    const Json adapter = Json::parse(tvctl("--json show --state adapter1").out)["adapter1"];
    EXPECT_TRUE(adapter["rxCells"].is_number_unsigned());
    EXPECT_EQ(adapter["lossOfSignal"], false);
    EXPECT_EQ(adapter["linkDown"], nullptr);
    EXPECT_EQ(adapter["linkKind"], Json::parse(R"({"code":2,"text":"OC3c MM"})"));
    EXPECT_EQ(adapter["lec1"]["mtu"], 1516);
    EXPECT_EQ(adapter["les8"], Json::parse(R"({"state":{"code":0,"text":"no such server"}})"));
    EXPECT_EQ(adapter["ip"]["connections"][0]["networkPrefix"], nullptr);
    EXPECT_EQ(adapter["ip"]["connections"][0]["vci"], 120);
    driver.simulator.ctl("rows lecs 1 0");
    EXPECT_EQ(Json::parse(tvctl("--json show --state adapter1/lecs").out)["adapter1"]["lecs"]["clients"],
              Json::array());
}

TEST(State, ExitStatus) {
    SampleRoot root;
    EXPECT_EQ(tvctl("show --state").status, 8);
    const Said none = tvctl("show --state adapter1 --json");
    EXPECT_EQ(none.status, 8);
    EXPECT_EQ(Json::parse(none.out),
              Json::parse(R"({"format":1,"error":{"code":8,"message":"there is no driver"}})"));

    Simulator simulator({"--frozen", "--adapters", "1,3"});
    const struct {
        const char* fault;
        const char* paths;
        int status;
        const char* err;
        bool printed;
    } cases[] = {
        {"clear", "", 0, "", true},
        {"clear", "adapter3", 0, "", true},
        {"clear", "adapter2/lec1", 10, "tvctl: the driver reports no adapter2\n", false},
        {"clear", "adapter1 adapter5", 10, "tvctl: there is no adapter5\n", false},
        {"clear", "adapter1/les9", 10, "tvctl: there is no adapter1/les9\n", false},
        {"clear", "adapter1/lec1.mtu", 2, "tvctl: \"adapter1/lec1.mtu\" is no path, such as adapter1/lec2\n",
         false},
        {"lec.state nth 1 resp 77", "", 4, "tvctl: adapter1/lec1: the driver refuses to say (77)\n", true},
        {"lec.state nth 1 short 17", "", 4, "tvctl: adapter1/lec1: the driver's answer is incomplete\n",
         true},
        {"lec.state nth 1 silent", "", 3, "tvctl: adapter1/lec1: the driver does not answer\n", true},
        {"lec.state nth 1 malformed lie", "", 3, "tvctl: adapter1/lec1: the driver does not answer\n", true},
        {"lec.state nth 1 hangup", "", 3, "tvctl: adapter1/lec1: the driver does not answer\n", true},
        {"driver.boards nth 1 resp 5", "", 4, "tvctl: the driver refuses to say which adapters there are\n",
         false},
        {"driver.boards nth 1 resp 5", "adapter2/lec1", 4, nullptr, true},
        {"driver.boards nth 1 hangup", "", 8, "tvctl: there is no driver\n", false},
        {"any every silent", "", 3, "tvctl: the driver does not answer\n", false},
        {"any every silent", "adapter1", 3, "tvctl: the driver does not answer\n", true},
        {"open every silent", "adapter1", 3, "tvctl: the driver does not answer\n", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{} {}", c.fault, c.paths));
        simulator.ctl(std::string("fault ") + c.fault);
        const auto before = std::chrono::steady_clock::now();
        const Said said = tvctl(fmt::format("show --state {} --timeout 0.5", c.paths));
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
        EXPECT_EQ(said.status, c.status);
        if (c.err) {
            EXPECT_EQ(said.err, c.err);
        }
        EXPECT_EQ(!said.out.empty(), c.printed);
        simulator.ctl("fault clear");
    }
}

TEST(State, TheLongestTable) {
    Driver driver;
    driver.simulator.ctl("rows lecs 1 65535");
    const Said text = tvctl("show --state adapter1/lecs"), said = tvctl("show --state adapter1/lecs --json");
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("\nadapter1/lecs.clients[65534].learned = "), std::string::npos);
    EXPECT_EQ(Json::parse(said.out)["adapter1"]["lecs"]["clients"].size(), 65535U);
}
