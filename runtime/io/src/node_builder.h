// Collects a value of several parts, such as a list of structures, while a parser reads it.
#pragma once

#include <string_view>
#include <vector>

#include "node.h"

namespace quay::zero::io {

class NodeBuilder {
public:
    /// Whether a list or an object was begun that isn't ended yet.
    bool isOpen() const noexcept { return !open_.empty(); }

    /// Begins a list or an object: a new value, or a part of the one that is open.
    void begin(Node::Kind kind);
    /// Ends the innermost list or object that is open.
    void end();
    /// The key of the part that comes next. Refused if the innermost object has it already, or has too many.
    void addKey(std::string_view name);
    void addScalar(Node const& scalar);
    /// The value, once it isn't open any more.
    Node take() noexcept;

private:
    Node& addPart(Node part);

    Node value_;
    std::vector<Node*>
        open_;  // nodes of `value_`, outermost first; a list's items don't move while one of them is open
};

}  // namespace quay::zero::io
