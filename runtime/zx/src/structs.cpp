#include "array_data.h"

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
zx::Array* findPlace(zxArray* array, std::size_t index, std::string_view name) {
    zx::Structs& structs = structsOf(array);
    zx::checkIndex(*array, index);
    std::optional<std::size_t> const number = structs.find(name);
    return number ? &structs.values(*number)[index] : nullptr;
}

constexpr std::size_t kFew = 16;

}  // namespace

std::optional<std::size_t> zx::Structs::find(std::string_view name) const {
    if (!numbers_.empty()) {
        auto const found = numbers_.find(name);
        return found != numbers_.end() ? std::optional(found->second) : std::nullopt;
    }
    for (std::size_t number = 0; number < fields_.size(); ++number) {
        if (fields_[number].name == name) {
            return number;
        }
    }
    return std::nullopt;
}

zx::Structs::Field& zx::Structs::add(std::string_view name, std::size_t count) {
    if (numbers_.empty() && fields_.size() >= kFew) {
        decltype(numbers_) all;
        for (std::size_t number = 0; number < fields_.size(); ++number) {
            all.emplace(fields_[number].name, number);
        }
        numbers_ = std::move(all);
    }
    fields_.push_back({std::string(name), std::vector<Array>(count)});
    if (!numbers_.empty()) {
        try {
            numbers_.emplace(name, fields_.size() - 1);
        } catch (...) {
            fields_.pop_back();
            throw;
        }
    }
    return fields_.back();
}

void zx::Structs::remove(std::size_t number) {
    if (!numbers_.empty()) {
        numbers_.erase(fields_[number].name);
        for (auto& [name, other] : numbers_) {
            other -= other > number ? 1 : 0;
        }
    }
    fields_.erase(fields_.begin() + static_cast<std::ptrdiff_t>(number));
}

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
    for (zx::Array& element : structs.values(*number)) {
        zx::drop(element);
    }
    structs.remove(*number);
    return true;
}

zxArray const* zxGetField(zxArray const* array, std::size_t index, std::string_view name) {
    zx::Array const* const place = findPlace(const_cast<zxArray*>(array), index, name);
    return place != nullptr ? &zx::orEmpty(*place) : nullptr;
}

zxArray* zxGetFieldForWriting(zxArray* array, std::size_t index, std::string_view name) {
    zx::Array* const place = findPlace(array, index, name);
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
