// The array, the only kind of value that scripts know. This header has what every array has: its class, shape, equality
// and serial. An array is N-dimensional, its elements are in column-major order, and it owns all that is in it, other
// arrays included.
//
// Arrays are as safe as plain values: any number of threads may read one, or one may write it. Functions that
// take a `zxArray const*` accept null only where they say so and throw std::invalid_argument elsewhere. An
// argument that doesn't fit (an array of another class, an unknown field) is std::invalid_argument as well,
// an index past the end std::out_of_range, and a shape that no memory could hold std::length_error. A
// function that throws has changed nothing and has taken nothing over.
#pragma once

#include <keel/export.h>
#include <zx/life.h>
#include <zx/types.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// A 1 by 1 array of the same class with a deep copy of one element.
QUAY_ZERO_API zxArray* zxDuplicateElement(zxArray const* array, std::size_t index);

/// Whether two arrays have the same class, shape and contents, at all depths. Structs may have their fields
/// in different orders. Zeros of both signs are equal; objects compare as their class says. Null equals only
/// null.
QUAY_ZERO_API bool zxIsEqual(zxArray const* left, zxArray const* right, zxNanRule nans = zxNanRule::Differ);

QUAY_ZERO_API zxClassCode zxGetClassCode(zxArray const* array);
/// "cell", "struct", "logical", "char", "double" to "uint64", "string", or the class of an object array. The
/// text lives as long as the array.
QUAY_ZERO_API std::string_view zxGetClassName(zxArray const* array);

/// Whether the array's class has this very name. False for null.
QUAY_ZERO_API bool zxIsClass(zxArray const* array, std::string_view className) noexcept;
/// Whether the array's class has this name or derives from the class that has it. False for null. An object with an
/// underlying array is also one of that array's class; other ancestors are known through zx::setClassHierarchy.
QUAY_ZERO_API bool zxIsA(zxArray const* array, std::string_view className);

// All of these return false for null.
QUAY_ZERO_API bool zxIsNumeric(zxArray const* array) noexcept;  ///< double to uint64
QUAY_ZERO_API bool zxIsLogical(zxArray const* array) noexcept;
QUAY_ZERO_API bool zxIsChar(zxArray const* array) noexcept;
QUAY_ZERO_API bool zxIsCell(zxArray const* array) noexcept;
QUAY_ZERO_API bool zxIsStruct(zxArray const* array) noexcept;
QUAY_ZERO_API bool zxIsObject(zxArray const* array) noexcept;  ///< `string` objects as well
QUAY_ZERO_API bool zxIsComplex(zxArray const* array) noexcept;

/// Whether the array has no element, as is true of null.
QUAY_ZERO_API bool zxIsEmpty(zxArray const* array) noexcept;
QUAY_ZERO_API std::size_t zxGetNumberOfElements(zxArray const* array) noexcept;

/// At least two dimensions; the last one, if there are more than two, isn't 1. The span is valid until the shape is
/// changed.
QUAY_ZERO_API std::span<std::size_t const> zxGetDimensions(zxArray const* array);
QUAY_ZERO_API std::size_t zxGetRows(zxArray const* array);
/// The product of all dimensions but the first.
QUAY_ZERO_API std::size_t zxGetColumns(zxArray const* array);
/// Gives the same elements another shape, which must have as many. At least two dimensions.
QUAY_ZERO_API void zxSetDimensions(zxArray* array, std::span<std::size_t const> dimensions);

namespace zx {

/// Identifies the state of an array: a number that is never used twice in a process. A new one is drawn when an array
/// is made and whenever anything in it is written, at any depth. Requesting access for writing counts as a write at
/// that moment; code that keeps the access must request it again before it writes later. Changes inside a native object
/// aren't noticed.
QUAY_ZERO_API std::uint64_t serialOf(zxArray const* array);

/// Tells whether class `className` derives from class `ancestor`.
using DerivesFrom = bool(std::string_view className, std::string_view ancestor);

/// Sets the function by which zxIsA knows the class hierarchy of objects; null for none. Returns the function that was
/// set before. A function must be reset before its library is unloaded.
QUAY_ZERO_API DerivesFrom* setClassHierarchy(DerivesFrom* derivesFrom) noexcept;

}  // namespace zx
