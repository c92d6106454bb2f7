// What a value of a property can be compared with, and the conditions that do it.
#pragma once

#include <quay/zero/query/condition.h>
#include <quay/zero/type_traits.h>
#include <quay/zero/value_descriptor.h>

#include <bit>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace quay::zero::query {

enum class Comparison : std::uint8_t { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Contains, StartsWith };

template <class T>
concept WholeNumber =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;
template <class T>
concept Number = WholeNumber<T> || std::floating_point<T>;
template <class T>
concept Text = std::same_as<T, std::string> || std::same_as<T, std::u16string>;

/// What a property of type T is compared with when `V` is given: whole numbers with whole numbers by their value,
/// whatever their types; reals with numbers; text with text of the same kind; all others with their own type. Undefined
/// for every other pair.
template <class T, class V>
struct Operand;
template <class T>
requires(std::same_as<T, bool> || std::is_enum_v<T>) struct Operand<T, T> {
    using Type = T;
};
template <WholeNumber T, WholeNumber V>
struct Operand<T, V> {
    using Type = std::conditional_t<std::is_signed_v<V>, long long, unsigned long long>;
};
template <std::floating_point T, Number V>
struct Operand<T, V> {
    using Type = T;
};
template <Text T, class V>
requires(std::convertible_to<V const&, std::basic_string_view<typename T::value_type>> &&
         !std::same_as<V, std::nullptr_t>) struct Operand<T, V> {
    using Type = T;
};

template <class T, class V>
concept ComparableWith = requires {
    typename Operand<T, V>::Type;
};
/// Whether the type's values have an order: all but truth values.
template <class T, class V>
concept OrderedWith = ComparableWith<T, V> && !std::same_as<T, bool>;
template <class T, class V>
concept TextWith = ComparableWith<T, V> && Text<T>;

/// Whether a value compares so with an operand.
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

/// Base of the conditions on a property with one value of type T, or with at most one. `f` is asked about the field.
template <class T, bool optional>
class ValueCondition : public PropertyCondition {
public:
    ValueCondition(meta::Property const& property, AbstractQuery const* query) : PropertyCondition(property, query) {}

    void check(Search const& search) const override { checkValue(search, metaTypeOf<T>(), optional); }

protected:
    using Field = std::conditional_t<optional, boost::optional<T>, T>;

    template <class F>
    Mask matchFields(Element* const* block, Mask wanted, F&& f) const {
        // `check` saw to it that the descriptor is one of such a field.
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

/// Compares with a fixed operand. An absent value equals none and stands in no order to any.
template <Comparison c, class T, bool optional, class V>
class ComparisonCondition final : public ValueCondition<T, optional> {
    using Base = ValueCondition<T, optional>;

public:
    template <class Given>
    ComparisonCondition(meta::Property const& property, AbstractQuery const* query, Given const& operand)
        : Base(property, query), operand_(makeOperand(operand)) {}

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
    template <class Given>
    static V makeOperand(Given const& operand) {
        if constexpr (Text<V>) {
            return V(std::basic_string_view<typename V::value_type>(operand));
        } else {
            return static_cast<V>(operand);
        }
    }

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

}  // namespace quay::zero::query
