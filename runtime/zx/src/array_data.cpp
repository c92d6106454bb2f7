#include "array_data.h"

#include <atomic>
#include <stdexcept>

namespace zx {

std::uint64_t drawSerial() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

zxArray const& emptyArray() {
    static auto const* const empty = create<Plain>(Shape(0, 0), zxDoubleClass, false, 0U);
    return *empty;
}

void touch(zxArray& array) noexcept {
    for (zxArray* written = &array; written != nullptr; written = written->parent) {
        written->serial = drawSerial();
    }
}

zxArray const& notNull(zxArray const* array) {
    if (array == nullptr) {
        throw std::invalid_argument("an array is missing");
    }
    return *array;
}

zxArray& notNull(zxArray* array) { return const_cast<zxArray&>(notNull(static_cast<zxArray const*>(array))); }

void checkIndex(zxArray const& array, std::size_t index) {
    if (index >= array.shape.count()) {
        throw std::out_of_range("an array has no element at that index");
    }
}

void refuse(char const* expected) { throw std::invalid_argument(expected); }

}  // namespace zx
