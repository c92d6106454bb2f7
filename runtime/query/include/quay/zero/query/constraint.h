// Constraints: conditions together with the class of the elements that they apply to.
#pragma once

#include <quay/zero/query/condition.h>

#include <concepts>
#include <type_traits>
#include <utility>

namespace quay::zero::query {

/// A condition on elements of class X. Made by the operators of constrainables, combined by &&, || and !. Copies share
/// the condition. A constraint on a class converts to one on each class derived from it, never the other way round. It
/// must not be used once the library of its class is unloaded.
template <class X>
class Constraint {
public:
    explicit Constraint(Condition::Pointer condition) noexcept : condition_(std::move(condition)) {}
    template <class Base>
    requires(!std::same_as<Base, X> && std::derived_from<X, Base>)
        // NOLINTNEXTLINE(google-explicit-constructor): implicit on purpose
        Constraint(Constraint<Base> const& base)
    noexcept : condition_(base.condition()) {}

    Condition::Pointer const& condition() const noexcept { return condition_; }

    Constraint operator!() const { return Constraint(negation(condition_)); }

private:
    Condition::Pointer condition_;
};

/// One of the classes is the other, or is derived from it.
template <class X, class Y>
concept OneLine = std::derived_from<X, Y> || std::derived_from<Y, X>;

template <class X, class Y>
using MoreDerived = std::conditional_t<std::derived_from<X, Y>, X, Y>;

/// Both constraints, or either one. The second is checked only on elements for which the first doesn't decide.
template <class X, class Y>
requires OneLine<X, Y> Constraint<MoreDerived<X, Y>>
operator&&(Constraint<X> const& a, Constraint<Y> const& b) {
    return Constraint<MoreDerived<X, Y>>(both(a.condition(), b.condition()));
}
template <class X, class Y>
requires OneLine<X, Y> Constraint<MoreDerived<X, Y>>
operator||(Constraint<X> const& a, Constraint<Y> const& b) {
    return Constraint<MoreDerived<X, Y>>(either(a.condition(), b.condition()));
}

}  // namespace quay::zero::query
