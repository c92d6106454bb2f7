// How large a text may be from which a model is loaded.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quay::zero::io {

/// The most that a text may take; a text that takes more is refused. The defaults allow models of millions of elements,
/// and a depth that can't exhaust the stack.
struct Limits {
    std::uint64_t size = std::uint64_t{4} << 30;  ///< bytes
    std::size_t depth = 1'000;                    ///< JSON objects and arrays inside one another
    std::size_t count = 20'000'000;               ///< elements
};

}  // namespace quay::zero::io
