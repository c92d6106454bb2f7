// Checks of positions in sequences.
#pragma once

#include <keel/export.h>

#include <cstddef>

namespace quay::zero {

[[noreturn]] QUAY_ZERO_API void reportPosition();

/// Throws std::out_of_range unless the position lies before the end.
inline void requirePosition(std::size_t position, std::size_t end) {
    if (position >= end) reportPosition();
}

}  // namespace quay::zero
