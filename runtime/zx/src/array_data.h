// What an array is inside.
#pragma once

#include "contents.h"
#include "plain.h"
#include "shape.h"

#include <cstdint>
#include <utility>
#include <variant>

namespace zx {

using Content = std::variant<Plain, Cells, Structs, Texts, Based, Natives>;

std::uint64_t drawSerial() noexcept;

}  // namespace zx

struct zxArray_tag {
    template <class T, class... Arguments>
    zxArray_tag(zx::Shape theShape, std::in_place_type_t<T> type, Arguments&&... arguments)
        : serial(zx::drawSerial()), shape(std::move(theShape)), content(type, std::forward<Arguments>(arguments)...) {}

    zxArray_tag(zxArray_tag const&) = delete;
    zxArray_tag& operator=(zxArray_tag const&) = delete;

    std::uint64_t serial;
    zxArray* parent = nullptr;  // the array that this one is an element of
    zx::Shape shape;
    zx::Content content;
};

namespace zx {

/// A new array with a content of type `T`, which is made of `arguments`.
template <class T, class... Arguments>
zxArray* create(Shape shape, Arguments&&... arguments) {
    return new zxArray(std::move(shape), std::in_place_type<T>, std::forward<Arguments>(arguments)...);
}

/// What an element reads as that wasn't set: a 0 by 0 double array.
zxArray const& emptyArray();

inline zxArray const& orEmpty(zxArray const* element) { return element != nullptr ? *element : emptyArray(); }

/// Calls `visit` with the place of each element of `array` that can be an array, unset ones included.
template <class Visit>
void forEachElement(zxArray& array, Visit visit) {
    if (auto* const cells = std::get_if<Cells>(&array.content)) {
        for (zxArray*& element : cells->elements) {
            visit(element);
        }
    } else if (auto* const structs = std::get_if<Structs>(&array.content)) {
        for (std::size_t number = 0; number < structs->fields().size(); ++number) {
            for (zxArray*& element : structs->values(number)) {
                visit(element);
            }
        }
    } else if (auto* const based = std::get_if<Based>(&array.content)) {
        visit(based->underlying);
    }
}

/// Draws a new serial for `array` and for every array that contains it.
void touch(zxArray& array) noexcept;

zxArray const& notNull(zxArray const* array);
zxArray& notNull(zxArray* array);
void checkIndex(zxArray const& array, std::size_t index);

[[noreturn]] void refuse(char const* expected);

/// The content of an array that must hold a `T`. Otherwise throws with the text `expected`.
template <class T>
T const& contentOf(zxArray const* array, char const* expected) {
    T const* const content = std::get_if<T>(&notNull(array).content);
    if (content == nullptr) {
        refuse(expected);
    }
    return *content;
}

template <class T>
T& contentOf(zxArray* array, char const* expected) {
    return const_cast<T&>(contentOf<T>(static_cast<zxArray const*>(array), expected));
}

template <class T>
bool holds(zxArray const* array) noexcept {
    return array != nullptr && std::holds_alternative<T>(array->content);
}

}  // namespace zx
