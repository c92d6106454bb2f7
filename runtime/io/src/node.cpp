#include "node.h"

namespace quay::zero::io {

Node const* Node::find(std::string_view key) const noexcept {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i] == key) return &items[i];
    }
    return nullptr;
}

Node const* Node::escape(std::string_view key) const noexcept {
    return kind == Kind::Object && keys.size() == 1 && keys[0] == key ? &items[0] : nullptr;
}

char const* describe(Node const& node) noexcept {
    switch (node.kind) {
        case Node::Kind::Null:
            return "null";
        case Node::Kind::Boolean:
            return node.truth ? "true" : "false";
        case Node::Kind::Number:
            return "a number";
        case Node::Kind::Text:
            return "a text";
        case Node::Kind::List:
            return "a list";
        default:
            return "an object";
    }
}

}  // namespace quay::zero::io
