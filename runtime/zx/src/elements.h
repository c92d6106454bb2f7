// Making arrays, and putting them into others as elements.
#pragma once

#include "array_data.h"

#include <zx/life.h>

#include <utility>

namespace zx {

/// Makes an array by create<T>, and owns it.
template <class T, class... Arguments>
Array make(Shape shape, Arguments&&... arguments) {
    return Array(create<T>(std::move(shape), std::forward<Arguments>(arguments)...));
}

/// Throws std::invalid_argument if `value`, which may be null, stands in an array already or has `owner` in
/// itself.
void checkPut(zxArray const& owner, zxArray const* value);
/// Puts `value`, which must pass checkPut, in the place of `element` in `owner`, and releases what was there.
void put(zxArray& owner, zxArray*& element, zxArray* value);

/// The element itself; if it wasn't set, it is an array of its own from now on.
zxArray& getForWriting(zxArray& owner, zxArray*& element);

/// Takes an element out of the array that it stands in and releases it.
void drop(zxArray*& element) noexcept;

}  // namespace zx
