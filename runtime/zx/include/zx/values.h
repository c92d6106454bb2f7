// Arrays whose elements are plain numbers: numeric, logical and char.
#pragma once

#include <zx/array.h>

#include <complex>
#include <type_traits>

/// A matrix of zeros. `classCode` is that of numbers, logical or char; complex (`complexFlag` not 0) are
/// numbers only. The real and the imaginary part of an element lie side by side.
QUAY_ZERO_API zxArray* zxCreateNumericMatrix(std::size_t rows, std::size_t columns, zxClassCode classCode,
                                             int complexFlag = 0);
/// A numeric array with any number of dimensions, at least two.
QUAY_ZERO_API zxArray* zxCreateNumericArray(std::span<std::size_t const> dimensions, zxClassCode classCode,
                                            int complexFlag = 0);

/// Bytes that one element takes: both parts of a complex one. 0 for arrays of other things.
QUAY_ZERO_API std::size_t zxGetElementSize(zxArray const* array);
/// The elements, or null if there are none.
QUAY_ZERO_API void const* zxGetData(zxArray const* array);
QUAY_ZERO_API void* zxGetDataForWriting(zxArray* array);

/// The element as a double, whichever class of number it is; the real part of a complex one. 64-bit integers
/// are rounded.
QUAY_ZERO_API double zxGetNumber(zxArray const* array, std::size_t index = 0);

namespace zx {
namespace detail {

template <class T>
struct IsComplex : std::false_type {};
template <class T>
struct IsComplex<std::complex<T>> : std::true_type {};

QUAY_ZERO_API void checkAccess(zxArray const* array, zxClassCode classCode, bool isComplex);
QUAY_ZERO_API void checkIndex(zxArray const* array, std::size_t index);

}  // namespace detail

/// The class of arrays whose elements are `T`s: bool is logical, char16_t is char, and a std::complex has the
/// class of its parts.
template <class T>
constexpr zxClassCode classCodeOf() {
    if constexpr (detail::IsComplex<T>::value) {
        return classCodeOf<typename T::value_type>();
    } else if constexpr (std::is_same_v<T, bool>) {
        return zxLogicalClass;
    } else if constexpr (std::is_same_v<T, char16_t>) {
        return zxCharClass;
    } else if constexpr (std::is_same_v<T, double>) {
        return zxDoubleClass;
    } else if constexpr (std::is_same_v<T, float>) {
        return zxSingleClass;
    } else {
        static_assert(std::is_integral_v<T> && sizeof(T) <= 8, "no array has such elements");
        constexpr unsigned sizes = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 2 : sizeof(T) == 4 ? 4 : 6;
        return static_cast<zxClassCode>(zxInt8Class + sizes + (std::is_unsigned_v<T> ? 1U : 0U));
    }
}

/// The elements of an array of exactly that class; std::invalid_argument for another one.
template <class T>
std::span<T const> values(zxArray const* array) {
    detail::checkAccess(array, classCodeOf<T>(), detail::IsComplex<T>::value);
    return {static_cast<T const*>(zxGetData(array)), zxGetNumberOfElements(array)};
}

/// The data for writing; the array counts as written.
template <class T>
std::span<T> valuesForWriting(zxArray* array) {
    detail::checkAccess(array, classCodeOf<T>(), detail::IsComplex<T>::value);
    return {static_cast<T*>(zxGetDataForWriting(array)), zxGetNumberOfElements(array)};
}

template <class T>
T valueAt(zxArray const* array, std::size_t index = 0) {
    std::span<T const> const all = values<T>(array);
    detail::checkIndex(array, index);
    return all[index];
}

/// A 1 by 1 array.
template <class T>
Array scalar(T value) {
    Array array(zxCreateNumericMatrix(1, 1, classCodeOf<T>(), detail::IsComplex<T>::value ? 1 : 0));
    valuesForWriting<T>(array.get())[0] = value;
    return array;
}

}  // namespace zx
