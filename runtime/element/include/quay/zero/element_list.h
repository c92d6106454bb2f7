// A model's elements: the list in order of creation, and the index by id.
#pragma once

#include <quay/zero/model_element.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <vector>

namespace quay::zero {

/// Doubly linked through the elements. An element taken out keeps its links, so that putting elements back in exactly
/// the reverse order of their removal restores the list, without a search and without memory.
class ElementList {
public:
    using Element = ModelElement::Impl;

    Element* first() const noexcept { return first_; }
    Element* last() const noexcept { return last_; }
    static Element* next(Element const& e) noexcept { return e.next_; }
    static Element* previous(Element const& e) noexcept { return e.previous_; }
    std::size_t size() const noexcept { return size_; }

    void append(Element& e) noexcept {
        e.previous_ = last_;
        e.next_ = nullptr;
        (last_ == nullptr ? first_ : last_->next_) = &e;
        last_ = &e;
        ++size_;
    }
    /// Takes out, or puts back, the run from `first` to `last`; `count` is its length.
    void takeOut(Element& first, Element& last, std::size_t count) noexcept {
        (first.previous_ == nullptr ? first_ : first.previous_->next_) = last.next_;
        (last.next_ == nullptr ? last_ : last.next_->previous_) = first.previous_;
        size_ -= count;
    }
    void putBack(Element& first, Element& last, std::size_t count) noexcept {
        (first.previous_ == nullptr ? first_ : first.previous_->next_) = &first;
        (last.next_ == nullptr ? last_ : last.next_->previous_) = &last;
        size_ += count;
    }

    template <class F>
    void forEach(F&& f) const {
        for (Element* e = first_; e != nullptr; e = e->next_) f(*e);
    }

private:
    Element* first_ = nullptr;
    Element* last_ = nullptr;
    std::size_t size_ = 0;
};

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
