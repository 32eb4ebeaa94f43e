// What a command prints: one tree of named values, of which two printers make text and JSON.
//
// Every node has its value for JSON and the lines that say the same in text, so that neither can have what
// the other lacks. Lines are in the order in which nodes are put together.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

using Json = nlohmann::ordered_json;

class Tree {
  public:
    // An object without members.
    Tree() : json_(Json::object()) {}
    Tree(Json value, std::vector<std::string> lines) : json_(std::move(value)), lines_(std::move(lines)) {}
    static Tree array() { return {Json::array(), {}}; }

    // A member, behind the others. One of that name is replaced, its lines stay.
    Tree& put(const std::string& name, Tree node);
    // An element of an array.
    Tree& add(Tree node);

    const Json& json() const { return json_; }
    const std::vector<std::string>& lines() const { return lines_; }

  private:
    void take(std::vector<std::string>& lines);

    Json json_;
    std::vector<std::string> lines_;
};
