#include "array_data.h"

#include <zx/array.h>

#include <atomic>
#include <stdexcept>

namespace {

std::string_view nameOf(zxClassCode classCode) {
    switch (classCode) {
        case zxLogicalClass:
            return "logical";
        case zxCharClass:
            return "char";
        case zxDoubleClass:
            return "double";
        case zxSingleClass:
            return "single";
        case zxInt8Class:
            return "int8";
        case zxUint8Class:
            return "uint8";
        case zxInt16Class:
            return "int16";
        case zxUint16Class:
            return "uint16";
        case zxInt32Class:
            return "int32";
        case zxUint32Class:
            return "uint32";
        case zxInt64Class:
            return "int64";
        default:
            return "uint64";
    }
}

struct ClassOf {
    zxClassCode operator()(zx::Plain const& plain) const { return plain.classCode(); }
    zxClassCode operator()(zx::Cells const&) const { return zxCellClass; }
    zxClassCode operator()(zx::Structs const&) const { return zxStructClass; }
    zxClassCode operator()(zx::Texts const&) const { return zxObjectClass; }
    zxClassCode operator()(zx::Based const&) const { return zxObjectClass; }
    zxClassCode operator()(zx::Natives const&) const { return zxObjectClass; }
};

struct ClassNameOf {
    std::string_view operator()(zx::Plain const& plain) const { return nameOf(plain.classCode()); }
    std::string_view operator()(zx::Cells const&) const { return "cell"; }
    std::string_view operator()(zx::Structs const&) const { return "struct"; }
    std::string_view operator()(zx::Texts const&) const { return "string"; }
    std::string_view operator()(zx::Based const& based) const { return based.className; }
    std::string_view operator()(zx::Natives const& natives) const { return natives.className(); }
};

zx::Plain const* plainOf(zxArray const* array) {
    return array != nullptr ? std::get_if<zx::Plain>(&array->content) : nullptr;
}

std::atomic<zx::DerivesFrom*> classHierarchy{nullptr};

}  // namespace

zxClassCode zxGetClassCode(zxArray const* array) { return std::visit(ClassOf(), zx::notNull(array).content); }

std::string_view zxGetClassName(zxArray const* array) { return std::visit(ClassNameOf(), zx::notNull(array).content); }

bool zxIsClass(zxArray const* array, std::string_view className) noexcept {
    return array != nullptr && std::visit(ClassNameOf(), array->content) == className;
}

bool zxIsA(zxArray const* array, std::string_view className) {
    if (zxIsClass(array, className)) {
        return true;
    }
    if (!zxIsObject(array)) {
        return false;
    }
    auto const* const based = std::get_if<zx::Based>(&array->content);
    if (based != nullptr && zxIsClass(based->underlying, className)) {
        return true;
    }
    zx::DerivesFrom* const derivesFrom = classHierarchy.load();
    return derivesFrom != nullptr && derivesFrom(zxGetClassName(array), className);
}

zx::DerivesFrom* zx::setClassHierarchy(DerivesFrom* derivesFrom) noexcept {
    return classHierarchy.exchange(derivesFrom);
}

bool zxIsNumeric(zxArray const* array) noexcept {
    zx::Plain const* const plain = plainOf(array);
    return plain != nullptr && zx::isNumberClass(plain->classCode());
}

bool zxIsLogical(zxArray const* array) noexcept {
    zx::Plain const* const plain = plainOf(array);
    return plain != nullptr && plain->classCode() == zxLogicalClass;
}

bool zxIsChar(zxArray const* array) noexcept {
    zx::Plain const* const plain = plainOf(array);
    return plain != nullptr && plain->classCode() == zxCharClass;
}

bool zxIsCell(zxArray const* array) noexcept { return zx::holds<zx::Cells>(array); }

bool zxIsStruct(zxArray const* array) noexcept { return zx::holds<zx::Structs>(array); }

bool zxIsObject(zxArray const* array) noexcept {
    return zx::holds<zx::Texts>(array) || zx::holds<zx::Based>(array) || zx::holds<zx::Natives>(array);
}

bool zxIsComplex(zxArray const* array) noexcept {
    zx::Plain const* const plain = plainOf(array);
    return plain != nullptr && plain->isComplex();
}

bool zxIsEmpty(zxArray const* array) noexcept { return zxGetNumberOfElements(array) == 0; }

std::size_t zxGetNumberOfElements(zxArray const* array) noexcept { return array != nullptr ? array->shape.count() : 0; }

std::span<std::size_t const> zxGetDimensions(zxArray const* array) { return zx::notNull(array).shape.dimensions(); }

std::size_t zxGetRows(zxArray const* array) { return zx::notNull(array).shape.rows(); }

std::size_t zxGetColumns(zxArray const* array) { return zx::notNull(array).shape.columns(); }

void zxSetDimensions(zxArray* array, std::span<std::size_t const> dimensions) {
    zxArray& written = zx::notNull(array);
    zx::Shape shape(dimensions);
    if (shape.count() != written.shape.count()) {
        throw std::invalid_argument("another shape must have as many elements");
    }
    auto* const based = std::get_if<zx::Based>(&written.content);
    if (based != nullptr && based->underlying != nullptr) {
        zxSetDimensions(based->underlying, dimensions);
    }
    zx::touch(written);
    written.shape = std::move(shape);
}

std::uint64_t zx::serialOf(zxArray const* array) { return notNull(array).serial; }
