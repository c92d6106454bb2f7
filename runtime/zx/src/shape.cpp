#include "shape.h"

#include <cstdint>
#include <stdexcept>

namespace zx {
namespace {

std::size_t countElements(std::span<std::size_t const> dimensions) {
    constexpr std::size_t limit = PTRDIFF_MAX;
    std::size_t product = 1;
    bool empty = false;
    for (std::size_t const dimension : dimensions) {
        if (dimension == 0) {
            empty = true;
        } else if (dimension > limit / product) {
            throw std::length_error("an array of so many elements can't be counted");
        } else {
            product *= dimension;
        }
    }
    return empty ? 0 : product;
}

std::span<std::size_t const> withoutTrailingOnes(std::span<std::size_t const> dimensions) {
    while (dimensions.size() > 2 && dimensions.back() == 1) {
        dimensions = dimensions.first(dimensions.size() - 1);
    }
    return dimensions;
}

}  // namespace

Shape::Shape(std::span<std::size_t const> dimensions) : count_(countElements(dimensions)) {
    if (dimensions.size() < 2) {
        throw std::invalid_argument("an array has at least two dimensions");
    }
    dimensions = withoutTrailingOnes(dimensions);
    if (dimensions.size() == 2) {
        matrix_ = {dimensions[0], dimensions[1]};
    } else {
        more_.assign(dimensions.begin(), dimensions.end());
    }
}

Shape::Shape(std::size_t rows, std::size_t columns) : matrix_{rows, columns}, count_(countElements(matrix_)) {}

std::size_t Shape::columns() const {
    std::size_t product = 1;
    for (std::size_t const dimension : dimensions().subspan(1)) {
        product *= dimension;
    }
    return product;
}

}  // namespace zx
