// Shape "sequence owned": children in order.
#pragma once

#include <quay/zero/element_sequence.h>
#include <quay/zero/elements/children.h>

namespace quay::zero::elements {

template <class T>
class SequenceOwned final : public Children<T, ElementSequence<T>> {
    using Base = Children<T, ElementSequence<T>>;

public:
    template <class X>
    constexpr SequenceOwned(std::uint16_t index, ElementSequence<T> X::*field) noexcept
        : Base(index, field, PropertyKind::ElementCollection) {}

    void place(ModelElement::Impl& owner, ModelElement const& child) const override {
        owner.requireLoaded();
        this->of(owner).addNewElement(child);
    }
};

}  // namespace quay::zero::elements
