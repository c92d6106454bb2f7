// The members that every handle of a class has.
#pragma once

#include <quay/zero/model_element.h>

#include <boost/uuid/uuid.hpp>
#include <concepts>
#include <functional>
#include <type_traits>

namespace quay::zero {

/// Whether the element is of the class that `table` describes, or of one derived from it.
QUAY_ZERO_API bool conformsTo(ModelElement const& element, ClassTable const& table) noexcept;

/// Base of the handle class `X`, whose elements are also `Base`s. X has a nested Impl and the static classTable().
/// A handle adds no data, so handles convert to their bases by plain copying.
template <class X, class Base>
class TypedHandle : public Base {
public:
    TypedHandle() noexcept = default;

    /// The element as an X; an empty handle if the element is of another class. Costs one comparison for each level.
    static X cast(ModelElement const& element) noexcept {
        X result;
        if (element.impl() != nullptr && conformsTo(element, X::classTable())) {
            static_cast<CountedHandle&>(result) = element;
        }
        return result;
    }
    /// A handle to an element that is known to be an X.
    static X of(ModelElement::Impl* impl) noexcept {
        X result;
        static_cast<CountedHandle&>(result) = ModelElement(impl);
        return result;
    }

    auto* impl() const noexcept { return static_cast<typename X::Impl*>(this->impl_); }
    auto* operator->() const noexcept { return impl(); }

    /// A nil id, a separate object for each class, and never written. The id of the class is in its meta class.
    static boost::uuids::uuid const& Uuid() noexcept {
        static boost::uuids::uuid nil{};
        return nil;
    }
};

/// Casts a member of a collection of X, which holds handles of the base class. Safe because X adds no data to its base.
template <class X>
X const& asHandle(ModelElement const& member) noexcept {
    static_assert(sizeof(X) == sizeof(ModelElement));
    return static_cast<X const&>(member);
}

}  // namespace quay::zero

/// Handles of every class are hashed by identity, as they are compared.
template <class X>
requires std::derived_from<X, quay::zero::ModelElement>
struct std::hash<X> : std::hash<quay::zero::ModelElement> {
};
