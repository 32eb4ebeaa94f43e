#include "ctl/tree.h"

#include <iterator>

void Tree::take(std::vector<std::string>& lines) {
    lines_.insert(lines_.end(), std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
}

Tree& Tree::put(const std::string& name, Tree node) {
    json_[name] = std::move(node.json_);
    take(node.lines_);
    return *this;
}

Tree& Tree::add(Tree node) {
    json_.push_back(std::move(node.json_));
    take(node.lines_);
    return *this;
}
