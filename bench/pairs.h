// Figures that are measured pair by pair with their floors.
#pragma once

#include <algorithm>
#include <chrono>
#include <fmt/core.h>
#include <vector>

inline double milliseconds() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

class Pairs {
  public:
    void add(double figure, double floor) {
        figures_.push_back(figure);
        floors_.push_back(floor);
        ratios_.push_back(figure / floor);
    }

    // One line: the name, the medians of both, and the median of the ratios.
    void print(const char* name) const {
        fmt::print("{} {:.2f} {:.2f} {:.2f}\n", name, median(figures_), median(floors_), median(ratios_));
    }

  private:
    std::vector<double> figures_, floors_, ratios_;
};
