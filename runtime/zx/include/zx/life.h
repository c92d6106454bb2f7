// Releasing and copying arrays, and owning them.
#pragma once

#include <keel/export.h>
#include <zx/types.h>

#include <memory>

/// Releases an array and all that is in it, whatever the depth; null is fine. The array mustn't be an element
/// of another one.
QUAY_ZERO_API void zxDestroyArray(zxArray* array) noexcept;

/// A deep copy; null gives null. Native objects are copied by their own operation.
QUAY_ZERO_API zxArray* zxDuplicateArray(zxArray const* array);

namespace zx {

struct Destroy {
    void operator()(zxArray* array) const noexcept { zxDestroyArray(array); }
};
/// An array with an owner. Every array that a function of the plain layer makes is put into one of these at once.
using Array = std::unique_ptr<zxArray, Destroy>;

inline Array copy(zxArray const* array) { return Array(zxDuplicateArray(array)); }

}  // namespace zx
