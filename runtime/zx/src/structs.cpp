#include "elements.h"

#include <zx/containers.h>

#include <stdexcept>

namespace {

zx::Structs const& structsOf(zxArray const* array) {
    return zx::contentOf<zx::Structs>(array, "a struct array is wanted");
}

zx::Structs& structsOf(zxArray* array) { return zx::contentOf<zx::Structs>(array, "a struct array is wanted"); }

zx::Structs::Field const& fieldAt(zxArray const* array, std::size_t number) {
    zx::Structs const& structs = structsOf(array);
    if (number >= structs.fields().size()) {
        throw std::out_of_range("a struct array has no field of that number");
    }
    return structs.fields()[number];
}

// The place of an element's field; null if there is no such field.
zxArray** findPlace(zxArray* array, std::size_t index, std::string_view name) {
    zx::Structs& structs = structsOf(array);
    zx::checkIndex(*array, index);
    std::optional<std::size_t> const number = structs.find(name);
    return number ? &structs.values(*number)[index] : nullptr;
}

}  // namespace

zxArray* zxCreateStructMatrix(std::size_t rows, std::size_t columns) {
    return zx::make<zx::Structs>(zx::Shape(rows, columns)).release();
}

zxArray* zxCreateStructArray(std::span<std::size_t const> dimensions) {
    return zx::make<zx::Structs>(zx::Shape(dimensions)).release();
}

std::size_t zxGetNumberOfFields(zxArray const* array) { return structsOf(array).fields().size(); }

std::string_view zxGetFieldName(zxArray const* array, std::size_t number) { return fieldAt(array, number).name; }

std::optional<std::size_t> zxFindField(zxArray const* array, std::string_view name) {
    return structsOf(array).find(name);
}

std::size_t zxAddField(zxArray* array, std::string_view name) {
    zx::Structs& structs = structsOf(array);
    if (name.empty()) {
        throw std::invalid_argument("a field needs a name");
    }
    if (std::optional<std::size_t> const number = structs.find(name)) {
        return *number;
    }
    structs.add(name, array->shape.count());
    zx::touch(*array);
    return structs.fields().size() - 1;
}

bool zxRemoveField(zxArray* array, std::string_view name) {
    zx::Structs& structs = structsOf(array);
    std::optional<std::size_t> const number = structs.find(name);
    if (!number) {
        return false;
    }
    zx::touch(*array);
    for (zxArray*& element : structs.values(*number)) {
        zx::drop(element);
    }
    structs.remove(*number);
    return true;
}

zxArray const* zxGetField(zxArray const* array, std::size_t index, std::string_view name) {
    zxArray* const* const place = findPlace(const_cast<zxArray*>(array), index, name);
    return place != nullptr ? &zx::orEmpty(*place) : nullptr;
}

zxArray* zxGetFieldForWriting(zxArray* array, std::size_t index, std::string_view name) {
    zxArray** const place = findPlace(array, index, name);
    return place != nullptr ? &zx::getForWriting(*array, *place) : nullptr;
}

void zxSetField(zxArray* array, std::size_t index, std::string_view name, zxArray* value) {
    structsOf(array);
    zx::checkIndex(*array, index);
    zx::checkPut(*array, value);
    zxSetFieldByNumber(array, index, zxAddField(array, name), value);
}

zxArray const* zxGetFieldByNumber(zxArray const* array, std::size_t index, std::size_t number) {
    zx::Structs::Field const& field = fieldAt(array, number);
    zx::checkIndex(*array, index);
    return &zx::orEmpty(field.values[index]);
}

void zxSetFieldByNumber(zxArray* array, std::size_t index, std::size_t number, zxArray* value) {
    fieldAt(array, number);
    zx::checkIndex(*array, index);
    zx::put(*array, structsOf(array).values(number)[index], value);
}
