// Shape "map owned": children by key, one for each key.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/elements/children.h>
#include <quay/zero/elements/key.h>

namespace quay::zero::elements {

/// Adding a child whose key is in use raises UniquenessConstraint.
template <class K, class T>
class MapOwned final : public Children<T, ElementMap<K, T>, KeyedDescriptor<K>> {
    using Base = Children<T, ElementMap<K, T>, KeyedDescriptor<K>>;

public:
    template <class X>
    constexpr MapOwned(std::uint16_t index, ElementMap<K, T> X::*field, KeyFunction<K> key) noexcept
        : Base(index, field, key) {}

    void place(ModelElement::Impl& owner, ModelElement const& child) const override {
        owner.requireLoaded();
        this->of(owner).insertElement(child, InsertPolicy::Report);
    }
};

}  // namespace quay::zero::elements
