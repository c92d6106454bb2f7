// How many values a property or a Value holds, and in what kind of collection.
#pragma once

#include <cstdint>

namespace quay::zero {

enum class ValueFlags : std::uint8_t { Optional = 0, One = 1, Sequence = 2, Set = 4, Multimap = 5, Map = 6 };

}  // namespace quay::zero
