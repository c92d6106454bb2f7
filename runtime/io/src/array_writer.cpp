// Arrays: {"class": "double", "data": [1, 2], "dims": [1, 2]}, elements in column-major order, and the imaginary parts
// under "imag". A char array's data is a text, a cell's a list of arrays, a struct's a list of lists of arrays in the
// order of "fields". Objects have the name of their class under "object", and what they are based on as data.
#include <zx/zx.h>

#include <complex>
#include <type_traits>

#include "failures.h"
#include "numeric_class.h"
#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

/// A list of what f appends for each number below `count`.
template <class F>
void appendList(std::string& out, std::size_t count, F&& f) {
    out.push_back('[');
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) out.push_back(',');
        f(i);
    }
    out.push_back(']');
}

template <class N>
void appendNumber(std::string& out, N value) {
    if constexpr (std::is_floating_point_v<N>) {
        appendReal(out, value);
    } else {
        appendInteger(out, static_cast<std::conditional_t<std::is_signed_v<N>, std::int64_t, std::uint64_t>>(value));
    }
}

void appendDimensions(std::string& out, zxArray const* array) {
    auto const dimensions = zxGetDimensions(array);
    out += "\"dims\":";
    appendList(out, dimensions.size(), [&](std::size_t i) { appendInteger(out, dimensions[i]); });
}

/// `"class":"...","data":[...],"dims":[...],"imag":[...]`
template <class N>
void appendNumbers(std::string& out, zxArray const* array) {
    std::size_t const count = zxGetNumberOfElements(array);
    bool const isComplex = zxIsComplex(array);
    std::size_t const step = isComplex ? 2 : 1;  // the parts of an element lie side by side
    auto const* const parts = static_cast<N const*>(zxGetData(array));
    appendList(out, count, [&](std::size_t i) { appendNumber(out, parts[i * step]); });
    out.push_back(',');
    appendDimensions(out, array);
    if (!isComplex) return;
    out += ",\"imag\":";
    appendList(out, count, [&](std::size_t i) { appendNumber(out, parts[i * 2 + 1]); });
}

void appendFields(std::string& out, zxArray const* array) {
    std::size_t const fields = zxGetNumberOfFields(array);
    appendList(out, zxGetNumberOfElements(array), [&](std::size_t i) {
        appendList(out, fields, [&](std::size_t f) { appendArray(out, zxGetFieldByNumber(array, i, f)); });
    });
    out.push_back(',');
    appendDimensions(out, array);
    out += ",\"fields\":";
    appendList(out, fields, [&](std::size_t f) { appendBytes(out, zxGetFieldName(array, f)); });
}

/// An object array says what it is based on, if it is not an empty one.
void appendObjects(std::string& out, zxArray const* array) {
    if (zxIsNativeObject(array)) {
        throw Refused("objects of " + inQuotes(zxGetClassName(array)) + " have no text");
    }
    out += "\"data\":";
    if (zxArray const* const underlying = zxGetUnderlyingArray(array)) {
        appendArray(out, underlying);
    } else {
        out += "null";
    }
    out.push_back(',');
    appendDimensions(out, array);
    out += ",\"object\":";
    appendBytes(out, zxGetClassName(array));
}

}  // namespace

void appendArray(std::string& out, zxArray const* array) {
    out.push_back('{');
    zxClassCode const code = zxGetClassCode(array);
    bool const isString =
        zxIsClass(array, "string") && !zxIsNativeObject(array) && zxGetUnderlyingArray(array) == nullptr;
    if (code == zxObjectClass && !isString) {
        appendObjects(out, array);
        out.push_back('}');
        return;
    }
    out += "\"class\":";
    appendBytes(out, zxGetClassName(array));
    out += ",\"data\":";
    std::size_t const count = zxGetNumberOfElements(array);
    auto const appendRest = [&] {
        out.push_back(',');
        appendDimensions(out, array);
    };
    bool const isNumber = withNumberType(code, [&]<class N>(N) { appendNumbers<N>(out, array); });
    if (isNumber) {
        // all said
    } else if (code == zxLogicalClass) {
        auto const values = zx::values<bool>(array);
        appendList(out, count, [&](std::size_t i) { out += values[i] ? "true" : "false"; });
        appendRest();
    } else if (code == zxCharClass) {
        auto const units = zx::values<char16_t>(array);
        appendText(out, {units.data(), units.size()});
        appendRest();
    } else if (code == zxCellClass) {
        appendList(out, count, [&](std::size_t i) { appendArray(out, zxGetCell(array, i)); });
        appendRest();
    } else if (code == zxStructClass) {
        appendFields(out, array);
    } else {
        appendList(out, count, [&](std::size_t i) { appendText(out, zxGetStringElement(array, i)); });
        appendRest();
    }
    out.push_back('}');
}

}  // namespace quay::zero::io
