#include "elements.h"

#include <stdexcept>

namespace zx {

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

void put(zxArray& owner, zxArray*& element, zxArray* value) {
    checkPut(owner, value);
    touch(owner);
    drop(element);
    element = value;
    if (value != nullptr) {
        value->parent = &owner;
    }
}

zxArray& getForWriting(zxArray& owner, zxArray*& element) {
    if (element == nullptr) {
        put(owner, element, make<Plain>(Shape(0, 0), zxDoubleClass, false, 0U).release());
    }
    touch(*element);
    return *element;
}

void drop(zxArray*& element) noexcept {
    if (element != nullptr) {
        element->parent = nullptr;
        zxDestroyArray(std::exchange(element, nullptr));
    }
}

}  // namespace zx
