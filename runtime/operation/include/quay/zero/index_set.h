// A set of property indices.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quay::zero {

/// One bit an index, up to a highest one that is given once.
class IndexSet {
public:
    explicit IndexSet(std::size_t size) : words_((size + 63) / 64) {}

    /// Whether the index is in the set; a larger one than the highest isn't.
    bool test(std::size_t index) const noexcept {
        return index / 64 < words_.size() && ((words_[index / 64] >> index % 64) & 1) != 0;
    }
    /// How many indices are in the set.
    std::size_t count() const noexcept {
        std::size_t sum = 0;
        for (std::uint64_t const word : words_) sum += static_cast<std::size_t>(std::popcount(word));
        return sum;
    }
    /// Adds an index, which isn't larger than the highest.
    void set(std::size_t index) noexcept { words_[index / 64] |= std::uint64_t{1} << index % 64; }

private:
    std::vector<std::uint64_t> words_;
};

}  // namespace quay::zero
