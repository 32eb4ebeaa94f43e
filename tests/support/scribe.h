// What people and older tools make of a parameter file.
#pragma once

#include <algorithm>
#include <fmt/format.h>
#include <random>
#include <sstream>
#include <string>

// The same seed gives the same.
class Scribe {
  public:
    explicit Scribe(unsigned seed) : random_(seed) {}

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

    // Any layout, keys and sections missing, doubled and unknown ones in between.
    std::string rewritten(const std::string& orderly) {
        const std::string lineEnd = chance(8) ? "\r\n" : "\n";
        std::istringstream lines(orderly);
        std::string text;
        bool joins = false;  // a key may stand on the line of the one before
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("\t[")) joins = false;
            if (line.starts_with("\t[") && chance(7)) {  // the whole section
                while (std::getline(lines, line) && line != "\t]") {
                }
                continue;
            }
            if (line.starts_with("\t[") && chance(5)) line.insert(line.size() - 1, chance(2) ? " = " : "=");
            std::string end = (chance(8) ? " # [remark] = " + std::string(20, 'r') : "") + lineEnd;
            if (const std::size_t at = line.find("= "); line.starts_with('\t') && at != line.npos) {
                if (chance(9)) continue;
                static constexpr const char* equals[] = {"=", " = ", "\t\t= ", " =", "=   "};
                const std::string key = line.substr(0, line.find(' ')), rest = line.substr(at + 2);
                const std::size_t length = std::min(rest.find(' '), rest.size());
                const std::string value = spelled(rest.substr(0, length));
                const bool isList = value.starts_with('/');
                if (joins && chance(14)) text.replace(text.size() - lineEnd.size(), lineEnd.size(), " ");
                joins = !value.empty() && !isList;  // an empty value would become this key
                line = fmt::format("{}{}{}{}{}", chance(9) ? "  " : "", key, equals[below(5)], value,
                                   rest.substr(length));
                if (chance(20) && !isList) end += line + lineEnd;
                if (chance(20)) end += "Unknown = 7" + lineEnd;
            }
            if (chance(20)) end += "# " + std::string(below(9) ? 40 : 200, 'c') + lineEnd;
            text += line + end;
        }
        if (chance(3)) text += "[Other" + lineEnd + "Key = 1" + lineEnd + "]" + lineEnd;
        return text;
    }

  protected:
    std::string spelled(const std::string& value) {
        static constexpr const char* odd[] = {"", "01", "70000", "-1", "0x1", "7a"};
        if (value.starts_with('/')) return chance(4) ? "" : chance(3) ? value + "other" : value;
        if (chance(6)) return odd[below(6)];
        if (chance(8)) return std::string(static_cast<std::size_t>(below(50)), 'n');
        return chance(8) ? value.substr(0, value.size() / 2) : value;
    }

    std::mt19937 random_;
};
