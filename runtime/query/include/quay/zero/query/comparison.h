// The conditions on values. The runtime instantiates them for the standard types, a package for its enumerations.
#pragma once

#include <quay/zero/query/operand.h>
#include <quay/zero/type_traits.h>
#include <quay/zero/value_descriptor.h>

#include <bit>
#include <boost/optional.hpp>
#include <memory>
#include <type_traits>
#include <utility>

namespace quay::zero::query {

/// Whether the comparison `c` of a value with an operand is true.
template <Comparison c, class T, class V>
bool compares(T const& value, V const& operand) {
    if constexpr (c == Comparison::NotEqual) {
        return !compares<Comparison::Equal>(value, operand);
    } else if constexpr (c == Comparison::Contains) {
        return value.find(operand) != T::npos;
    } else if constexpr (c == Comparison::StartsWith) {
        return value.starts_with(operand);
    } else if constexpr (WholeNumber<T>) {
        if constexpr (c == Comparison::Equal) return std::cmp_equal(value, operand);
        if constexpr (c == Comparison::Less) return std::cmp_less(value, operand);
        if constexpr (c == Comparison::LessEqual) return std::cmp_less_equal(value, operand);
        if constexpr (c == Comparison::Greater) return std::cmp_greater(value, operand);
        if constexpr (c == Comparison::GreaterEqual) return std::cmp_greater_equal(value, operand);
    } else {
        if constexpr (c == Comparison::Equal) return value == operand;
        if constexpr (c == Comparison::Less) return value < operand;
        if constexpr (c == Comparison::LessEqual) return value <= operand;
        if constexpr (c == Comparison::Greater) return value > operand;
        if constexpr (c == Comparison::GreaterEqual) return value >= operand;
    }
}

/// The meta type of a value type.
template <class T>
meta::Type metaTypeOf() {
    if constexpr (PrimitiveValue<T>) {
        return meta::StandardTypes::of<T>();
    } else {
        return TypeOf<T>::type();
    }
}

/// Base of the conditions on a property with one value of type T, or with at most one. `matchFields` calls f with the
/// field of each wanted element.
template <class T, bool optional>
class ValueCondition : public PropertyCondition {
public:
    ValueCondition(meta::Property const& property, AbstractQuery const* query) : PropertyCondition(property, query) {}

    void check(Search const& search) const override { checkValue(search, metaTypeOf<T>(), optional); }

protected:
    using Field = std::conditional_t<optional, boost::optional<T>, T>;

    template <class F>
    Mask matchFields(Element* const* block, Mask wanted, F&& f) const {
        // `check` has made sure that the descriptor is one of such a field.
        auto const& values = *static_cast<ValueDescriptor<Field> const*>(descriptor());
        Mask met = 0;
        if ((wanted & (wanted + 1)) == 0) {  // all of a block, which is the most frequent case by far
            int const count = std::popcount(wanted);
            for (int i = 0; i < count; ++i) met |= Mask{f(values.read(*block[i]))} << i;
            return met;
        }
        for (Mask left = wanted; left != 0; left &= left - 1) {
            int const i = std::countr_zero(left);
            met |= Mask{f(values.read(*block[i]))} << i;
        }
        return met;
    }
};

/// Compares with a fixed operand. For an absent value, only NotEqual is true.
template <Comparison c, class T, bool optional, class V>
class ComparisonCondition final : public ValueCondition<T, optional> {
    using Base = ValueCondition<T, optional>;

public:
    ComparisonCondition(meta::Property const& property, AbstractQuery const* query, V operand)
        : Base(property, query), operand_(std::move(operand)) {}

    Mask match(Condition::Element* const* block, Mask wanted) const override {
        return this->matchFields(block, wanted, [this](typename Base::Field const& field) {
            if constexpr (optional) {
                return field ? compares<c>(*field, operand_) : c == Comparison::NotEqual;
            } else {
                return compares<c>(field, operand_);
            }
        });
    }

private:
    V operand_;
};

/// Whether an optional value is there.
template <class T>
class PresenceCondition final : public ValueCondition<T, true> {
public:
    using ValueCondition<T, true>::ValueCondition;

    Mask match(Condition::Element* const* block, Mask wanted) const override {
        return this->matchFields(block, wanted, [](boost::optional<T> const& field) { return field.has_value(); });
    }
};

/// Creates the condition of a comparison that is known at run time.
template <class T, bool optional, class V>
Condition::Pointer makeComparison(meta::Property const& property, AbstractQuery const* query, Comparison comparison,
                                  V&& operand) {
    auto const make = [&]<Comparison c>(std::integral_constant<Comparison, c> /*known*/) -> Condition::Pointer {
        return std::make_shared<ComparisonCondition<c, T, optional, V>>(property, query, std::forward<V>(operand));
    };
    using enum Comparison;
    if (comparison == Equal) return make(std::integral_constant<Comparison, Equal>());
    if (comparison == NotEqual) return make(std::integral_constant<Comparison, NotEqual>());
    if constexpr (!std::same_as<T, bool>) {
        if (comparison == Less) return make(std::integral_constant<Comparison, Less>());
        if (comparison == LessEqual) return make(std::integral_constant<Comparison, LessEqual>());
        if (comparison == Greater) return make(std::integral_constant<Comparison, Greater>());
        if (comparison == GreaterEqual) return make(std::integral_constant<Comparison, GreaterEqual>());
    }
    if constexpr (Text<T>) {
        if (comparison == Contains) return make(std::integral_constant<Comparison, Contains>());
        if (comparison == StartsWith) return make(std::integral_constant<Comparison, StartsWith>());
    }
    return nullptr;  // the constrainable has no such operator
}

template <class T, class V>
Condition::Pointer Comparisons<T, V>::make(meta::Property const& property, AbstractQuery const* query,
                                           Comparison comparison, bool optional, V operand) {
    return optional ? makeComparison<T, true>(property, query, comparison, std::move(operand))
                    : makeComparison<T, false>(property, query, comparison, std::move(operand));
}

template <class T>
Condition::Pointer Presence<T>::make(meta::Property const& property, AbstractQuery const* query) {
    return std::make_shared<PresenceCondition<T>>(property, query);
}

}  // namespace quay::zero::query
