#include "elements.h"

#include <zx/text.h>
#include <zx/values.h>

#include <keel/text.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr char const* expected = "a string object is wanted";

zxArray* createStrings(zx::Shape shape) {
    std::size_t const count = shape.count();
    return zx::make<zx::Texts>(std::move(shape), count).release();
}

}  // namespace

zxArray* zxCreateString(std::string_view text) { return zxCreateString_UTF8(text); }

zxArray* zxCreateString_UTF8(std::string_view text) { return zxCreateString_UTF16(keel::toUtf16(text)); }

zxArray* zxCreateString_UTF16(std::u16string_view text) {
    zx::Array array(zxCreateNumericMatrix(text.empty() ? 0 : 1, text.size(), zxCharClass));
    if (!text.empty()) {
        std::memcpy(zxGetDataForWriting(array.get()), text.data(), text.size() * sizeof(char16_t));
    }
    return array.release();
}

zxArray* zxCreateStringObject(std::u16string_view text) {
    zx::Array array(createStrings(zx::Shape(1, 1)));
    std::get<zx::Texts>(array->content).elements[0] = text;
    return array.release();
}

zxArray* zxCreateStringObjectArray(std::span<std::size_t const> dimensions) {
    return createStrings(zx::Shape(dimensions));
}

std::u16string_view zxGetStringElement(zxArray const* array, std::size_t index) {
    auto const& texts = zx::contentOf<zx::Texts>(array, expected);
    zx::checkIndex(*array, index);
    return texts.elements[index];
}

void zxSetStringElement(zxArray* array, std::size_t index, std::u16string_view text) {
    auto& texts = zx::contentOf<zx::Texts>(array, expected);
    zx::checkIndex(*array, index);
    texts.elements[index] = std::u16string(text);
    zx::touch(*array);
}

bool zxIsText(zxArray const* array) noexcept {
    return zxIsChar(array) || (zx::holds<zx::Texts>(array) && array->shape.count() == 1);
}

char* zxArrayToString_UTF8(zxArray const* array, std::size_t* length) {
    if (!zxIsText(array)) {
        return nullptr;
    }
    std::string const text = zx::utf8Of(array);
    auto* const memory = static_cast<char*>(std::malloc(text.size() + 1));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(memory, text.c_str(), text.size() + 1);
    if (length != nullptr) {
        *length = text.size();
    }
    return memory;
}

void zxFree(void* memory) noexcept { std::free(memory); }

std::u16string_view zx::textOf(zxArray const* array) {
    if (!zxIsText(array)) {
        refuse("a text is wanted: a char array or one string object");
    }
    if (zxIsChar(array)) {
        std::span<char16_t const> const units = values<char16_t>(array);
        return {units.data(), units.size()};
    }
    return zxGetStringElement(array, 0);
}

std::string zx::utf8Of(zxArray const* array) { return keel::toUtf8(textOf(array)); }
