// Arrays of objects: either values of a class that is based on a built-in one, such as enumerations, or
// objects of native code behind pointers. Their class is known here by its name only.
#pragma once

#include <zx/array.h>
#include <zx/native_operations.h>

/// Objects of a class that is based on `underlying`'s, one for each of its elements; takes `underlying` over,
/// which must be a numeric, logical or char array.
QUAY_ZERO_API zxArray* zxCreateObjectFromUnderlying(std::string_view className, zxArray* underlying);

/// No object, 0 by 0, but of a class.
QUAY_ZERO_API zxArray* zxCreateEmptyObject(std::string_view className);

/// One native object, which the array owns from now on.
QUAY_ZERO_API zxArray* zxCreateNativeObject(std::string_view className, void* native,
                                            zx::NativeOperations const& operations);

/// Places for native objects, each null at first.
QUAY_ZERO_API zxArray* zxCreateNativeObjectArray(std::string_view className, std::span<std::size_t const> dimensions,
                                                 zx::NativeOperations const& operations);

/// The array on which an object array is based; null if there is none.
QUAY_ZERO_API zxArray const* zxGetUnderlyingArray(zxArray const* array);

/// Whether the elements are native objects.
QUAY_ZERO_API bool zxIsNativeObject(zxArray const* array) noexcept;
/// The native object, which stays the array's; null for an empty place.
QUAY_ZERO_API void* zxGetNative(zxArray const* array, std::size_t index = 0);
/// Puts a native object, or null, in place of the former one, which is destroyed.
QUAY_ZERO_API void zxSetNative(zxArray* array, std::size_t index, void* native);
/// The operations of the array's native objects. They also tell native objects of different makers apart.
QUAY_ZERO_API zx::NativeOperations const& zxGetNativeOperations(zxArray const* array);
