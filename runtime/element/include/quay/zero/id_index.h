// A model's elements by id.
#pragma once

#include <quay/zero/element_list.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <vector>

namespace quay::zero {

/// Finds elements by id: a flat hash table of element pointers. It holds an element from its first indexing until the
/// element is let go for good, dead or alive, and look-ups pass over the dead; so undoing never touches it. Elements
/// are indexed late, by the first look-up after their creation.
class IdIndex {
public:
    using Element = ModelElement::Impl;

    /// The live element of that id, or null.
    Element* find(boost::uuids::uuid const& id) const noexcept;
    /// Adds an element that isn't there yet.
    void add(Element& e);
    void remove(Element& e) noexcept;
    void clear() noexcept;

    /// Adds all elements of the list that aren't there yet.
    void catchUp(ElementList const& list);
    /// An element came back into the list somewhere. If there is no room for it, the next look-up walks the list.
    void returned(Element& e) noexcept {
        if ((e.flags_ & Element::kIndexed) != 0 || indexedUpTo_ == nullptr) return;
        hasRoom() ? add(e) : startOver();
    }
    /// The element is leaving the list.
    void forget(Element const& e) noexcept {
        if (indexedUpTo_ == &e) indexedUpTo_ = ElementList::previous(e);
    }

private:
    std::size_t home(boost::uuids::uuid const& id) const noexcept;
    void grow(std::size_t elements);
    bool hasRoom() const noexcept { return (count_ + 1) * 3 <= table_.size() * 2; }
    void startOver() noexcept { indexedUpTo_ = nullptr; }

    std::vector<Element*> table_;  // a power of two long, linear probing
    std::size_t count_ = 0;
    Element* indexedUpTo_ = nullptr;  // all elements up to this one are indexed; null: start at the first
};

}  // namespace quay::zero
