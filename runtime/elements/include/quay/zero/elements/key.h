// The key of a child, read by the getter of the property that keys its map.
#pragma once

#include <quay/zero/model_element.h>

namespace quay::zero::elements {

namespace detail {

template <class M>
struct GetterOf;
template <class K, class X>
struct GetterOf<K (X::*)() const> {
    using Key = K;
    using Class = X;
};
template <class K, class X>
struct GetterOf<K (X::*)() const noexcept> : GetterOf<K (X::*)() const> {};

}  // namespace detail

template <auto Getter>
typename detail::GetterOf<decltype(Getter)>::Key key(ModelElement::Impl const& child) {
    return (static_cast<typename detail::GetterOf<decltype(Getter)>::Class const&>(child).*Getter)();
}

}  // namespace quay::zero::elements
