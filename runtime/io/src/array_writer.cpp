// Writes arrays as JSON: {"class": "double", "data": [1, 2], "dims": [1, 2]}, elements in column-major order, and the
// imaginary parts under "imag". The data of a char array is a text, that of a cell array a list of arrays, and that of
// a struct array a list of lists of arrays in the order of "fields". An array of objects has the name of their class
// under "object" instead of "class"; its data is the array that the objects are based on, or null.
#include <zx/zx.h>

#include <cstdint>
#include <type_traits>

#include "failures.h"
#include "numeric_class.h"
#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

template <class N>
void appendNumber(std::string& out, N value) {
    if constexpr (std::is_floating_point_v<N>) {
        appendReal(out, value);
    } else {
        appendInteger(out, static_cast<std::conditional_t<std::is_signed_v<N>, std::int64_t, std::uint64_t>>(value));
    }
}

enum class NumberPart : std::size_t { Real, Imaginary };

/// Appends the real or the imaginary parts of an array of numbers. In memory they alternate.
void appendNumbers(std::string& out, zxArray const* array, NumberPart part) {
    std::size_t const step = zxIsComplex(array) ? 2 : 1;
    auto const first = static_cast<std::size_t>(part);
    withNumberType(zxGetClassCode(array), [&]<class N>(N) {
        auto const* const numbers = static_cast<N const*>(zxGetData(array));
        appendList(out, zxGetNumberOfElements(array),
                   [&](std::size_t i) { appendNumber(out, numbers[i * step + first]); });
    });
}

/// Appends the array that objects are based on; null for empty objects, which aren't based on any.
void appendUnderlying(std::string& out, zxArray const* array) {
    if (zxIsNativeObject(array)) {
        throw Refused("objects of " + inQuotes(zxGetClassName(array)) + " have no text");
    }
    if (zxArray const* const underlying = zxGetUnderlyingArray(array)) {
        appendArray(out, underlying);
    } else {
        out += "null";
    }
}

void appendData(std::string& out, zxArray const* array, zxClassCode code) {
    std::size_t const count = zxGetNumberOfElements(array);
    switch (code) {
        case zxLogicalClass: {
            auto const values = zx::values<bool>(array);
            appendList(out, count, [&](std::size_t i) { out += values[i] ? "true" : "false"; });
            break;
        }
        case zxCharClass: {
            auto const units = zx::values<char16_t>(array);
            appendText(out, {units.data(), units.size()});
            break;
        }
        case zxCellClass:
            appendList(out, count, [&](std::size_t i) { appendArray(out, zxGetCell(array, i)); });
            break;
        case zxStructClass:
            appendList(out, count, [&](std::size_t i) {
                appendList(out, zxGetNumberOfFields(array),
                           [&](std::size_t f) { appendArray(out, zxGetFieldByNumber(array, i, f)); });
            });
            break;
        case zxObjectClass:  // strings
            appendList(out, count, [&](std::size_t i) { appendText(out, zxGetStringElement(array, i)); });
            break;
        default:
            appendNumbers(out, array, NumberPart::Real);
    }
}

}  // namespace

void appendArray(std::string& out, zxArray const* array) {
    zxClassCode const code = zxGetClassCode(array);
    bool const isString =
        zxIsClass(array, "string") && !zxIsNativeObject(array) && zxGetUnderlyingArray(array) == nullptr;
    bool const isObject = code == zxObjectClass && !isString;
    out.push_back('{');
    if (isObject) {
        appendKey(out, "data", true);
        appendUnderlying(out, array);
    } else {
        appendKey(out, "class", true);
        appendBytes(out, zxGetClassName(array));
        appendKey(out, "data", false);
        appendData(out, array, code);
    }
    appendKey(out, "dims", false);
    auto const dimensions = zxGetDimensions(array);
    appendList(out, dimensions.size(), [&](std::size_t i) { appendInteger(out, dimensions[i]); });
    if (isObject) {
        appendKey(out, "object", false);
        appendBytes(out, zxGetClassName(array));
    } else if (code == zxStructClass) {
        appendKey(out, "fields", false);
        appendList(out, zxGetNumberOfFields(array), [&](std::size_t f) { appendBytes(out, zxGetFieldName(array, f)); });
    } else if (zxIsComplex(array)) {
        appendKey(out, "imag", false);
        appendNumbers(out, array, NumberPart::Imaginary);
    }
    out.push_back('}');
}

}  // namespace quay::zero::io
