#include "elements.h"

#include <zx/containers.h>

namespace {

constexpr char const* expected = "a cell array is wanted";

zxArray* createCells(zx::Shape shape) {
    std::size_t const count = shape.count();
    return zx::make<zx::Cells>(std::move(shape), count).release();
}

}  // namespace

zxArray* zxCreateCellMatrix(std::size_t rows, std::size_t columns) { return createCells(zx::Shape(rows, columns)); }

zxArray* zxCreateCellArray(std::span<std::size_t const> dimensions) { return createCells(zx::Shape(dimensions)); }

zxArray const* zxGetCell(zxArray const* array, std::size_t index) {
    auto const& cells = zx::contentOf<zx::Cells>(array, expected);
    zx::checkIndex(*array, index);
    return &zx::orEmpty(cells.elements[index]);
}

zxArray* zxGetCellForWriting(zxArray* array, std::size_t index) {
    auto& cells = zx::contentOf<zx::Cells>(array, expected);
    zx::checkIndex(*array, index);
    return &zx::getForWriting(*array, cells.elements[index]);
}

void zxSetCell(zxArray* array, std::size_t index, zxArray* value) {
    auto& cells = zx::contentOf<zx::Cells>(array, expected);
    zx::checkIndex(*array, index);
    zx::put(*array, cells.elements[index], value);
}
