// An array's dimensions.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace zx {

class Shape {
public:
    /// At least two dimensions; trailing ones that are 1 are removed. Throws std::length_error if the number of
    /// elements can't be counted, even without the dimensions that are 0.
    explicit Shape(std::span<std::size_t const> dimensions);
    Shape(std::size_t rows, std::size_t columns);

    std::span<std::size_t const> dimensions() const {
        return more_.empty() ? std::span<std::size_t const>(matrix_) : std::span<std::size_t const>(more_);
    }
    std::size_t count() const { return count_; }
    std::size_t rows() const { return dimensions()[0]; }
    std::size_t columns() const;

    friend bool operator==(Shape const&, Shape const&) = default;

private:
    std::array<std::size_t, 2> matrix_{};
    std::vector<std::size_t> more_;  // all dimensions, if there are more than two
    std::size_t count_;
};

}  // namespace zx
