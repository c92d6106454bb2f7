// Shape "multimap owned": children by key, any number for each key.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/elements/children.h>
#include <quay/zero/elements/key.h>

namespace quay::zero::elements {

template <class K, class T>
class MultimapOwned final : public Children<T, ElementMultimap<K, T>, KeyedDescriptor<K>> {
    using Base = Children<T, ElementMultimap<K, T>, KeyedDescriptor<K>>;

public:
    template <class X>
    constexpr MultimapOwned(std::uint16_t index, ElementMultimap<K, T> X::*field, KeyFunction<K> key) noexcept
        : Base(index, field, key) {}

    void place(ModelElement::Impl& owner, ModelElement const& child) const override {
        owner.requireLoaded();
        this->of(owner).insertElement(child, InsertPolicy::Report);
    }
};

}  // namespace quay::zero::elements
