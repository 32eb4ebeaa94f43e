// Prometheus' text format 0.0.4: families of samples, each with its labels. Samples have no time stamps.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace metrics {

enum class FamilyType { gauge, counter };

struct Family {
    const char* name;
    FamilyType type;
    const char* help;  // a sentence
};

struct Label {
    std::string name;   // [a-z_]+
    std::string value;  // of any bytes: what is not printable ASCII stands as tvctl prints it, "\xff"
};
using Labels = std::vector<Label>;

class Exposition {
  public:
    // In this order they are written, those without samples not at all. They outlive this object.
    explicit Exposition(std::span<const Family> families);

    // A sample of a family, whose labels nothing else of it has. Throws std::logic_error if there is no such
    // family.
    void add(std::string_view family, const Labels& labels, double value);

    std::string text() const;

  private:
    struct Lines {
        const Family* family;
        std::string text = {};
    };
    std::vector<Lines> families_;
    std::unordered_map<std::string_view, std::size_t> places_ = {};  // by name
};

}  // namespace metrics
