#include "elements.h"

#include <zx/values.h>

#include <cstring>
#include <stdexcept>

namespace {

constexpr char const* expected = "a numeric, logical or char array is wanted";

zxArray* createPlain(zx::Shape shape, zxClassCode classCode, int complexFlag) {
    if (zx::sizeOfPlain(classCode) == 0) {
        throw std::invalid_argument("an array of this class isn't made of numbers");
    }
    bool const isComplex = complexFlag != 0;
    if (isComplex && !zx::isNumberClass(classCode)) {
        throw std::invalid_argument("only numbers can be complex");
    }
    std::size_t const count = shape.count();
    return zx::make<zx::Plain>(std::move(shape), classCode, isComplex, count).release();
}

template <class T>
double numberAt(std::byte const* at) {
    T value;
    std::memcpy(&value, at, sizeof(T));
    return static_cast<double>(value);
}

}  // namespace

zxArray* zxCreateNumericMatrix(std::size_t rows, std::size_t columns, zxClassCode classCode, int complexFlag) {
    return createPlain(zx::Shape(rows, columns), classCode, complexFlag);
}

zxArray* zxCreateNumericArray(std::span<std::size_t const> dimensions, zxClassCode classCode, int complexFlag) {
    return createPlain(zx::Shape(dimensions), classCode, complexFlag);
}

std::size_t zxGetElementSize(zxArray const* array) {
    auto const* const plain = std::get_if<zx::Plain>(&zx::notNull(array).content);
    return plain != nullptr ? plain->elementSize() : 0;
}

void const* zxGetData(zxArray const* array) {
    auto const& plain = zx::contentOf<zx::Plain>(array, expected);
    return plain.size() != 0 ? plain.bytes() : nullptr;
}

void* zxGetDataForWriting(zxArray* array) {
    auto& plain = zx::contentOf<zx::Plain>(array, expected);
    zx::touch(*array);
    return plain.size() != 0 ? plain.bytes() : nullptr;
}

double zxGetNumber(zxArray const* array, std::size_t index) {
    auto const& plain = zx::contentOf<zx::Plain>(array, expected);
    zx::checkIndex(*array, index);
    std::byte const* const at = plain.bytes() + index * plain.elementSize();
    switch (plain.classCode()) {
        case zxDoubleClass:
            return numberAt<double>(at);
        case zxSingleClass:
            return numberAt<float>(at);
        case zxInt8Class:
            return numberAt<std::int8_t>(at);
        case zxInt16Class:
            return numberAt<std::int16_t>(at);
        case zxInt32Class:
            return numberAt<std::int32_t>(at);
        case zxInt64Class:
            return numberAt<std::int64_t>(at);
        case zxUint16Class:
        case zxCharClass:
            return numberAt<std::uint16_t>(at);
        case zxUint32Class:
            return numberAt<std::uint32_t>(at);
        case zxUint64Class:
            return numberAt<std::uint64_t>(at);
        default:
            return numberAt<std::uint8_t>(at);
    }
}

void zx::detail::checkAccess(zxArray const* array, zxClassCode classCode, bool isComplex) {
    auto const& plain = contentOf<Plain>(array, expected);
    if (plain.classCode() != classCode || plain.isComplex() != isComplex) {
        refuse("the array's elements are of another class");
    }
}

void zx::detail::checkIndex(zxArray const* array, std::size_t index) { zx::checkIndex(*array, index); }
