// A model's elements by id.
#pragma once

#include <quay/zero/element_list.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <vector>

namespace quay::zero {

/// Finds elements by id: a flat hash table of element pointers. It holds an element, dead or alive, from its first
/// indexing until the model releases it; look-ups skip dead elements, so undoing needn't change the table. An element
/// is indexed by the first look-up after its creation.
class IdIndex {
public:
    using Element = ModelElement::Impl;

    /// The live element of that id, or null.
    Element* find(boost::uuids::uuid const& id) const noexcept;
    /// Adds an element that isn't in the index yet.
    void add(Element& e);
    void remove(Element& e) noexcept;
    void clear() noexcept;

    /// Adds all elements of the list that aren't in the index yet.
    void catchUp(ElementList const& list);
    /// To be called when an element was put back into the list. If it can't be added for lack of memory, the next
    /// look-up walks the list.
    void returned(Element& e) noexcept {
        if ((e.flags_ & Element::kIndexed) != 0 || indexedUpTo_ == nullptr) return;
        hasRoom() ? add(e) : startOver();
    }
    /// To be called when an element is taken out of the list.
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
