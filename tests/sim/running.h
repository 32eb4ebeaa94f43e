// A simulator on the sample configuration.
#pragma once

#include "rawclient.h"
#include "tests/support/simulator.h"

struct Running {
    SampleRoot root;
    std::optional<Simulator> simulator;
    explicit Running(const std::vector<std::string>& options = {"--frozen"})
        : simulator(std::in_place, options) {}
    std::string ctl(std::string_view line) const { return simulator->ctl(line); }
    std::string node() const { return root.at("/dev/li").string(); }
};
