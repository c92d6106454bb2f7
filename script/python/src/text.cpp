#include "text.h"

#include <keel/text.h>
#include <ordo/factory/text.h>

#include <algorithm>

namespace host {
namespace {

bool isSurrogate(char32_t unit) { return (unit & 0xFFFFF800U) == 0xD800; }

}  // namespace

Ref textToPython(std::u16string_view units) {
    char16_t all = 0;
    bool hasSurrogates = false;
    for (char16_t const unit : units) {
        all = static_cast<char16_t>(all | unit);
        hasSurrogates = hasSurrogates || isSurrogate(unit);
    }
    auto const size = static_cast<Py_ssize_t>(units.size());
    if (hasSurrogates) {
        int order = -1;  // the machine's byte order: little-endian
        return Ref(
            PyUnicode_DecodeUTF16(reinterpret_cast<char const*>(units.data()), size * 2, "surrogatepass", &order));
    }
    if (all >= 0x100) {
        return Ref(PyUnicode_FromKindAndData(PyUnicode_2BYTE_KIND, units.data(), size));
    }
    Ref text(PyUnicode_New(size, all));
    std::transform(units.begin(), units.end(), PyUnicode_1BYTE_DATA(text.get()),
                   [](char16_t unit) { return static_cast<Py_UCS1>(unit); });
    return text;
}

Ref bytesToPython(std::string_view bytes) {
    return Ref(PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape"));
}

std::u16string textFromPython(PyObject* text) {
    checked(PyUnicode_READY(text));
    auto const size = static_cast<std::size_t>(PyUnicode_GET_LENGTH(text));
    std::u16string units;
    units.reserve(size);
    int const kind = PyUnicode_KIND(text);
    void const* const data = PyUnicode_DATA(text);
    for (std::size_t i = 0; i < size; ++i) {
        char32_t const character = PyUnicode_READ(kind, data, static_cast<Py_ssize_t>(i));
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (character >> 10U));
            units += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
        }
    }
    return units;
}

ordo::OrdoValue textValue(PyObject* text) {
    checked(PyUnicode_READY(text));
    auto const size = static_cast<std::size_t>(PyUnicode_GET_LENGTH(text));
    if (PyUnicode_IS_ASCII(text)) {
        return ordo::OrdoValue::borrowedBytes({reinterpret_cast<char const*>(PyUnicode_1BYTE_DATA(text)), size});
    }
    if (PyUnicode_KIND(text) == PyUnicode_2BYTE_KIND) {
        return ordo::OrdoValue::borrowedText({reinterpret_cast<char16_t const*>(PyUnicode_2BYTE_DATA(text)), size});
    }
    return ordo::OrdoValue::text(textFromPython(text));
}

std::string bytesFromPython(PyObject* text) { return ordo::factory::bytesOf(textFromPython(text)); }

std::string nameFromPython(PyObject* text) { return keel::toUtf8(textFromPython(text)); }

}  // namespace host
