// How an element's property keeps an array: as a copy of its own.
#pragma once

#include <keel/export.h>

struct zxArray_tag;

/// A deep copy for a property to keep; null gives null.
QUAY_ZERO_API zxArray_tag* omCopyArrayForPropertyContainment(zxArray_tag const* array);

namespace ordo {

/// Releases what omCopyArrayForPropertyContainment gave; null is fine.
QUAY_ZERO_API void property_array_deleter(zxArray_tag* array) noexcept;

}  // namespace ordo
