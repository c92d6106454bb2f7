// The track word of an element: what change tracking knows of it.
#pragma once

#include <cstdint>

namespace quay::zero {

class Storage;

/// Either the serial of the savepoint at which the element was born, or its latest Storage of old values.
class Track {
public:
    /// Born before any open savepoint.
    constexpr Track() noexcept = default;
    constexpr explicit Track(std::uint64_t birth) noexcept : word_((birth << 1) | 1) {}
    explicit Track(Storage& kept) noexcept : word_(reinterpret_cast<std::uintptr_t>(&kept)) {}

    constexpr bool isBirth() const noexcept { return (word_ & 1) != 0; }
    constexpr bool isBornSince(std::uint64_t serial) const noexcept { return isBirth() && (word_ >> 1) >= serial; }
    /// Must not be called if this is a birth.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a tagged pointer is what makes this one word
    Storage& storage() const noexcept { return *reinterpret_cast<Storage*>(word_); }

private:
    std::uintptr_t word_ = 1;
};

}  // namespace quay::zero
