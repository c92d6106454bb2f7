#include "array_data.h"

#include <atomic>
#include <stdexcept>

namespace zx {

std::uint64_t drawSerial() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

zxArray const& emptyArray() {
    static zxArray const* const empty = make<Plain>(Shape(0, 0), zxDoubleClass, false, 0U).release();
    return *empty;
}

void touch(zxArray& array) noexcept {
    for (zxArray* written = &array; written != nullptr; written = written->parent) {
        written->serial = drawSerial();
    }
}

void checkPut(zxArray const& owner, zxArray const* value) {
    if (value == nullptr) {
        return;
    }
    if (value->parent != nullptr) {
        throw std::invalid_argument("the array is an element of another one already; put a copy there");
    }
    for (zxArray const* above = &owner; above != nullptr; above = above->parent) {
        if (above == value) {
            throw std::invalid_argument("an array can't be an element of itself");
        }
    }
}

void put(zxArray& owner, Array& element, zxArray* value) {
    checkPut(owner, value);
    touch(owner);
    drop(element);
    element.reset(value);
    if (value != nullptr) {
        value->parent = &owner;
    }
}

zxArray& getForWriting(zxArray& owner, Array& element) {
    if (element == nullptr) {
        put(owner, element, make<Plain>(Shape(0, 0), zxDoubleClass, false, 0U).release());
    }
    touch(*element);
    return *element;
}

void drop(Array& element) noexcept {
    if (element != nullptr) {
        element->parent = nullptr;
        element.reset();
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
