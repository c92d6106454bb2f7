// What a value of a property can be compared with, and how conditions on values are made.
#pragma once

#include <quay/zero/query/condition.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

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

/// Creates the condition that compares a property's value of type T with an operand of type V, which is Operand<T,
/// ...>::Type. `optional`: the property has at most one value, otherwise exactly one. The library of the runtime has
/// the instances of the standard types, that of a package those of its enumerations; comparison.h has the definitions.
template <class T, class V>
struct QUAY_ZERO_API Comparisons {
    static Condition::Pointer make(meta::Property const& property, AbstractQuery const* query, Comparison comparison,
                                   bool optional, V operand);
};
/// Creates the condition that a property with at most one value of type T has one.
template <class T>
struct QUAY_ZERO_API Presence {
    static Condition::Pointer make(meta::Property const& property, AbstractQuery const* query);
};

}  // namespace quay::zero::query
