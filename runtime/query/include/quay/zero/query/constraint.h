// Constraints: conditions that know of what class the elements are that they can be asked about.
#pragma once

#include <quay/zero/query/condition.h>

#include <concepts>
#include <type_traits>
#include <utility>

namespace quay::zero::query {

/// What elements of class X are to meet. Made by the operators of constrainables, combined by &&, || and !. Copies
/// share what they hold. A constraint on a class is one on each class derived from it, never the other way round.
/// It doesn't outlive the library of its class.
template <class X>
class Constraint {
public:
    explicit Constraint(Condition::Pointer condition) noexcept : condition_(std::move(condition)) {}
    template <class Base>
    requires(!std::same_as<Base, X> && std::derived_from<X, Base>)
        // NOLINTNEXTLINE(google-explicit-constructor): meant to be
        Constraint(Constraint<Base> const& base)
    noexcept : condition_(base.condition()) {}

    Condition::Pointer const& condition() const noexcept { return condition_; }

    Constraint operator!() const { return Constraint(negation(condition_)); }

private:
    Condition::Pointer condition_;
};

/// One class is the other, or is derived from it.
template <class X, class Y>
concept OneLine = std::derived_from<X, Y> || std::derived_from<Y, X>;

template <class X, class Y>
using MoreDerived = std::conditional_t<std::derived_from<X, Y>, X, Y>;

/// Both constraints, or either one. The second is asked only where the first leaves it open.
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
