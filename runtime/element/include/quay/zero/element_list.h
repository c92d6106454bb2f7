// A model's elements in order of creation.
#pragma once

#include <quay/zero/model_element.h>

#include <cstddef>

namespace quay::zero {

/// A list that is doubly linked through the elements. An element that is taken out keeps its links: putting elements
/// back in exactly the reverse order restores the list without a search and without allocating.
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
    /// Takes out, or puts back, the `count` elements from `first` to `last`.
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

}  // namespace quay::zero
