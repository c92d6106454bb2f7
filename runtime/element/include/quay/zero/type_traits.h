// Which meta type stands for a C++ type.
#pragma once

#include <quay/zero/meta/standard_types.h>
#include <quay/zero/model_element.h>

#include <boost/optional/optional_fwd.hpp>
#include <concepts>
#include <set>
#include <type_traits>
#include <vector>

namespace quay::zero {

/// An enumeration or structured value type of a schema specialises this:
///   static meta::Type const& type();   its meta type
/// Primitive types need nothing; element classes have metaClass().
template <class T>
struct TypeOf;

template <class T>
concept ElementHandle = std::derived_from<T, ModelElement>;

template <class T>
concept PrimitiveValue = requires {
    meta::StandardTypes::of<T>();
};

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<boost::optional<T>> : std::true_type {};

/// The containers that hold several values of a value type.
template <class T>
struct IsContainer : std::false_type {};
template <class T>
struct IsContainer<std::vector<T>> : std::true_type {};
template <class T>
struct IsContainer<std::set<T>> : std::true_type {};

}  // namespace quay::zero
