// Constrainables: the properties of a class, as what queries put constraints on.
#pragma once

#include <quay/zero/query/attachment.h>
#include <quay/zero/query/constraint.h>
#include <quay/zero/query/operand.h>

#include <concepts>
#include <string_view>
#include <utility>

namespace quay::zero::query {

/// A counted property whose counting isn't inline: a schema has hundreds of constrainables, and each is made once.
class QUAY_ZERO_API HeldProperty {
public:
    explicit HeldProperty(meta::Property const& property) noexcept;
    HeldProperty(HeldProperty const&) = delete;
    HeldProperty& operator=(HeldProperty const&) = delete;
    ~HeldProperty();

    meta::Property const& get() const noexcept { return property_; }

private:
    meta::Property property_;
};

/// The base of all constrainables: a property with an attachment.
template <class T, class A, bool optional>
class AbstractConstrainable {
public:
    using ValueType = T;
    static constexpr bool kOptional = optional;

    AbstractConstrainable(AbstractConstrainable const&) = delete;
    AbstractConstrainable& operator=(AbstractConstrainable const&) = delete;
    virtual ~AbstractConstrainable() = default;

    A const& getAttachment() const noexcept { return attachment_; }
    /// The property. It is an empty handle, which no query accepts, if its package wasn't declared when this was made.
    meta::Property const& getProperty() const noexcept { return property_.get(); }

protected:
    AbstractConstrainable(A attachment, meta::Property const& property) noexcept
        : attachment_(attachment), property_(property) {}

private:
    A attachment_;
    HeldProperty property_;
};

/// A property with a value of type T, or with `optional` at most one, or with an element of a foreign class T. An
/// operand of a type that `Operand` doesn't allow doesn't compile. For an absent value, only `!=` is true.
template <class T, class A, bool optional, class Enable = void>
class ConstrainableWithAttachment : public AbstractConstrainable<T, A, optional> {
    using Made = Constraint<typename A::Subject>;

public:
    ConstrainableWithAttachment(A attachment, meta::Property const& property) noexcept
        : AbstractConstrainable<T, A, optional>(attachment, property) {}
    explicit ConstrainableWithAttachment(meta::Property const& property) noexcept
        : ConstrainableWithAttachment(A(), property) {}

    template <class V>
    requires ComparableWith<T, V> Made operator==(V const& v) const { return compare<Comparison::Equal>(v); }
    template <class V>
    requires ComparableWith<T, V> Made operator!=(V const& v) const { return compare<Comparison::NotEqual>(v); }
    template <class V>
    requires OrderedWith<T, V> Made operator<(V const& v) const { return compare<Comparison::Less>(v); }
    template <class V>
    requires OrderedWith<T, V> Made operator<=(V const& v) const { return compare<Comparison::LessEqual>(v); }
    template <class V>
    requires OrderedWith<T, V> Made operator>(V const& v) const { return compare<Comparison::Greater>(v); }
    template <class V>
    requires OrderedWith<T, V> Made operator>=(V const& v) const { return compare<Comparison::GreaterEqual>(v); }

    template <class V>
    requires TextWith<T, V> Made contains(V const& v)
    const { return compare<Comparison::Contains>(v); }
    template <class V>
    requires TextWith<T, V> Made startsWith(V const& v)
    const { return compare<Comparison::StartsWith>(v); }

    /// Whether there is a value.
    Made has() const requires(optional) {
        return Made(Presence<T>::make(this->getProperty(), this->getAttachment().getQuery()));
    }

    /// Whether the element is that one; an empty handle stands for none.
    Made operator==(T const& e) const requires std::derived_from<T, ModelElement> {
        return Made(holds(this->getProperty(), this->getAttachment().getQuery(), e));
    }
    Made operator!=(T const& e) const requires std::derived_from<T, ModelElement> { return !(*this == e); }

private:
    template <Comparison c, class V>
    Made compare(V const& given) const {
        using Compared = typename Operand<T, V>::Type;
        auto const operand = [&given] {
            if constexpr (Text<Compared>) {
                return Compared(std::basic_string_view<typename Compared::value_type>(given));
            } else {
                return static_cast<Compared>(given);
            }
        };
        return Made(Comparisons<T, Compared>::make(this->getProperty(), this->getAttachment().getQuery(), c, optional,
                                                   operand()));
    }
};

/// A property that owns elements of class Y, on which it puts constraints. Checking them resolves proxies, unless
/// resolution is held; those that can't be resolved are skipped.
template <class Y, class A>
class ConstrainableRelationWithAttachment : public AbstractConstrainable<Y, A, false> {
    using Made = Constraint<typename A::Subject>;

public:
    ConstrainableRelationWithAttachment(A attachment, meta::Property const& property) noexcept
        : AbstractConstrainable<Y, A, false>(attachment, property) {}
    explicit ConstrainableRelationWithAttachment(meta::Property const& property) noexcept
        : ConstrainableRelationWithAttachment(A(), property) {}

    /// At least one of the elements meets the constraint; all do, or there are none; none does.
    Made any(Constraint<Y> const& inner) const { return make(Quantifier::Any, inner.condition()); }
    Made all(Constraint<Y> const& inner) const { return make(Quantifier::All, inner.condition()); }
    Made none(Constraint<Y> const& inner) const { return make(Quantifier::None, inner.condition()); }
    /// There is at least one element; there is none.
    Made any() const { return make(Quantifier::Any, nullptr); }
    Made none() const { return make(Quantifier::None, nullptr); }

private:
    Made make(Quantifier quantifier, Condition::Pointer inner) const {
        return Made(related(this->getProperty(), this->getAttachment().getQuery(), quantifier, std::move(inner)));
    }
};

}  // namespace quay::zero::query
