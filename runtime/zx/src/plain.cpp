#include "plain.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>

namespace zx {
namespace {

// The system provides these zeros, so that pages of a large array which are never written take no memory.
std::byte* allocateZeros(std::size_t size) {
    void* const memory = std::calloc(size, 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return static_cast<std::byte*>(memory);
}

template <class T>
bool sameNumbers(std::byte const* left, std::byte const* right, std::size_t size, zxNanRule nans) {
    for (std::size_t at = 0; at < size; at += sizeof(T)) {
        T a;
        T b;
        std::memcpy(&a, left + at, sizeof(T));
        std::memcpy(&b, right + at, sizeof(T));
        bool const bothNan = std::isnan(a) && std::isnan(b);
        if (a != b && !(bothNan && nans == zxNanRule::Same)) {
            return false;
        }
    }
    return true;
}

std::size_t countBytes(std::size_t count, std::size_t elementSize) {
    if (count > PTRDIFF_MAX / elementSize) {
        throw std::length_error("an array of so many elements takes more memory than there can be");
    }
    return count * elementSize;
}

}  // namespace

std::size_t sizeOfPlain(zxClassCode classCode) {
    switch (classCode) {
        case zxLogicalClass:
        case zxInt8Class:
        case zxUint8Class:
            return 1;
        case zxCharClass:
        case zxInt16Class:
        case zxUint16Class:
            return 2;
        case zxSingleClass:
        case zxInt32Class:
        case zxUint32Class:
            return 4;
        case zxDoubleClass:
        case zxInt64Class:
        case zxUint64Class:
            return 8;
        default:
            return 0;
    }
}

bool isNumberClass(zxClassCode classCode) { return classCode >= zxDoubleClass && classCode <= zxUint64Class; }

Plain::Plain(zxClassCode classCode, bool isComplex, std::size_t count)
    : classCode_(classCode), isComplex_(isComplex), size_(countBytes(count, elementSize())) {
    if (size_ > few_.size()) {
        memory_.reset(allocateZeros(size_));
    }
}

Plain::Plain(Plain const& other)
    : classCode_(other.classCode_), isComplex_(other.isComplex_), size_(other.size_), few_(other.few_) {
    if (other.memory_ != nullptr) {
        memory_.reset(allocateZeros(size_));
        std::memcpy(memory_.get(), other.memory_.get(), size_);
    }
}

bool Plain::equals(Plain const& other, zxNanRule nans) const {
    if (classCode_ != other.classCode_ || isComplex_ != other.isComplex_ || size_ != other.size_) {
        return false;
    }
    switch (classCode_) {
        case zxDoubleClass:
            return sameNumbers<double>(bytes(), other.bytes(), size_, nans);
        case zxSingleClass:
            return sameNumbers<float>(bytes(), other.bytes(), size_, nans);
        default:
            return std::memcmp(bytes(), other.bytes(), size_) == 0;
    }
}

}  // namespace zx
