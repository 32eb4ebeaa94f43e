// What differs between two sides, as diff prints it.
#pragma once

#include "ctl/side.h"
#include "ctl/tree.h"

#include <cstddef>
#include <map>
#include <string>

struct Compared {
    Tree tree = Tree::array();
    // How many of them count, by the path of each service that both sides have.
    std::map<std::string, std::size_t> counted = {};

    bool different() const;
};

Compared compare(const Side& from, const Side& to);
