#include "node_builder.h"

#include <utility>

#include "failures.h"

namespace quay::zero::io {

namespace {

/// The most keys of an object. Each new key is compared with those before it, which takes long if there are many.
constexpr std::size_t kMostKeys = 256;

}  // namespace

void NodeBuilder::begin(Node::Kind kind) {
    Node node;
    node.kind = kind;
    open_.push_back(isOpen() ? &addPart(std::move(node)) : &(value_ = std::move(node)));
}

void NodeBuilder::end() { open_.pop_back(); }

void NodeBuilder::addKey(std::string_view name) {
    Node& object = *open_.back();
    if (object.keys.size() == kMostKeys) {
        throw Refused("a value has more than the " + std::to_string(kMostKeys) + " keys that are allowed");
    }
    if (object.find(name) != nullptr) refuseSecond(name);
    object.keys.emplace_back(name);
}

void NodeBuilder::addScalar(Node const& scalar) { addPart(scalar); }

Node NodeBuilder::take() noexcept { return std::exchange(value_, Node()); }

Node& NodeBuilder::addPart(Node part) { return open_.back()->items.emplace_back(std::move(part)); }

}  // namespace quay::zero::io
