// Shape "set owned": children without order or duplicates.
#pragma once

#include <quay/zero/element_set.h>
#include <quay/zero/elements/children.h>

namespace quay::zero::elements {

template <class T>
class SetOwned final : public Children<T, UnorderedElementSet<T>> {
    using Base = Children<T, UnorderedElementSet<T>>;

public:
    template <class X>
    constexpr SetOwned(std::uint16_t index, UnorderedElementSet<T> X::*field) noexcept
        : Base(index, field, PropertyKind::ElementCollection) {}

    void place(ModelElement::Impl& owner, ModelElement const& child) const override {
        owner.requireLoaded();
        this->of(owner).addElement(child);
    }
};

}  // namespace quay::zero::elements
