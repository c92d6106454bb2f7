#include "to_python.h"

#include "nesting.h"
#include "numpy_arrays.h"
#include "objects.h"
#include "text.h"

#include <ordo/class.h>
#include <ordo/error.h>

#include <zx/containers.h>
#include <zx/objects.h>
#include <zx/text.h>
#include <zx/values.h>

#include <complex>
#include <cstdint>
#include <cstring>
#include <string>

namespace host {
namespace {

using ordo::OrdoValue;

/// The one number of an array of any class.
Ref numberToPython(zxArray const* array) {
    void const* const data = zxGetData(array);
    auto const as = [&]<class T>(T value) {
        std::memcpy(&value, data, sizeof value);
        return value;
    };
    if (zxIsComplex(array) && zxGetClassCode(array) == zxDoubleClass) {
        auto const number = as(std::complex<double>());
        return Ref(PyComplex_FromDoubles(number.real(), number.imag()));
    }
    if (zxIsComplex(array)) {
        return numbersToPython(array);
    }
    switch (zxGetClassCode(array)) {
        case zxLogicalClass:
            return Ref(PyBool_FromLong(as(bool()) ? 1 : 0));
        case zxDoubleClass:
            return Ref(PyFloat_FromDouble(as(double())));
        case zxSingleClass:
            return Ref(PyFloat_FromDouble(as(float())));
        case zxInt8Class:
            return Ref(PyLong_FromLong(as(std::int8_t())));
        case zxUint8Class:
            return Ref(PyLong_FromLong(as(std::uint8_t())));
        case zxInt16Class:
            return Ref(PyLong_FromLong(as(std::int16_t())));
        case zxUint16Class:
            return Ref(PyLong_FromLong(as(std::uint16_t())));
        case zxInt32Class:
            return Ref(PyLong_FromLong(as(std::int32_t())));
        case zxUint32Class:
            return Ref(PyLong_FromLong(as(std::uint32_t())));
        case zxInt64Class:
            return Ref(PyLong_FromLong(as(std::int64_t())));
        default:
            return Ref(PyLong_FromUnsignedLong(as(std::uint64_t())));
    }
}

/// A list of the results of `convert` for each element; each row of a matrix becomes a nested list.
template <class Convert>
Ref listOf(zxArray const* array, Convert&& convert) {
    std::size_t const count = zxGetNumberOfElements(array);
    std::size_t const rows = zxGetDimensions(array).size() == 2 ? zxGetRows(array) : 1;
    std::size_t const columns = count / rows;
    bool const isMatrix = rows > 1 && columns > 1;
    auto const line = [&](std::size_t first, std::size_t step, std::size_t size) {
        Ref list(PyList_New(static_cast<Py_ssize_t>(size)));
        for (std::size_t i = 0; i < size; ++i) {
            PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(i), Ref(convert(first + i * step)).release());
        }
        return list;
    };
    if (!isMatrix) {
        return line(0, 1, count);
    }
    Ref list(PyList_New(static_cast<Py_ssize_t>(rows)));
    for (std::size_t r = 0; r < rows; ++r) {
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(r), line(r, rows, columns).release());
    }
    return list;
}

/// A char array of several rows becomes one text per row.
Ref textsToPython(zxArray const* array) {
    if (zxGetRows(array) <= 1) {
        return textToPython(zx::textOf(array));
    }
    auto const units = zx::values<char16_t>(array);
    std::size_t const rows = zxGetRows(array);
    Ref list(PyList_New(static_cast<Py_ssize_t>(rows)));
    for (std::size_t r = 0; r < rows; ++r) {
        std::u16string line;
        for (std::size_t i = r; i < units.size(); i += rows) {
            line += units[i];
        }
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(r), textToPython(line).release());
    }
    return list;
}

Ref structToPython(zxArray const* array, std::size_t index, int depth) {
    Ref dict(PyDict_New());
    for (std::size_t number = 0; number < zxGetNumberOfFields(array); ++number) {
        Ref const name = nameToPython(zxGetFieldName(array, number));
        Ref const value = arrayToPython(zxGetFieldByNumber(array, index, number), depth + 1);
        checked(PyDict_SetItem(dict.get(), name.get(), value.get()));
    }
    return dict;
}

Ref objectToPython(zxArray const* array, std::size_t index) {
    ordo::OrdoInterface* const object = ordo::objectAt(array, index);
    return object != nullptr && object->native() != nullptr ? wrap(*object) : none();
}

/// An object array: script objects, texts, or values of classes that are based on numbers.
Ref objectsToPython(zxArray const* array, int depth) {
    bool const isSingle = zxGetNumberOfElements(array) == 1;
    if (zxIsClass(array, "string")) {
        auto const one = [&](std::size_t index) { return textToPython(zxGetStringElement(array, index)); };
        return isSingle ? one(0) : listOf(array, one);
    }
    zxArray const* const underlying = zxGetUnderlyingArray(array);
    if (underlying == nullptr) {
        auto const one = [&](std::size_t index) { return objectToPython(array, index); };
        return isSingle ? one(0) : listOf(array, one);
    }
    ordo::OrdoClass* const ordoClass = ordo::OrdoClass::getClass(ordo::LookupName(zxGetClassName(array)));
    if (ordoClass == nullptr || !ordoClass->info().isEnumeration() || zxGetClassCode(underlying) != zxInt32Class) {
        return arrayToPython(underlying, depth);
    }
    auto const numbers = zx::values<std::int32_t>(underlying);
    auto const one = [&](std::size_t index) { return enumerationToPython(*ordoClass, numbers[index]); };
    return isSingle ? one(0) : listOf(array, one);
}

}  // namespace

Ref arrayToPython(zxArray const* array, int depth) {
    if (depth > deepest) {
        ordo::raise(ordo::failures::NestedTooDeep);
    }
    if (array == nullptr) {
        return none();
    }
    if (zxIsChar(array)) {
        return textsToPython(array);
    }
    if (zxIsEmpty(array)) {
        return none();
    }
    std::size_t const count = zxGetNumberOfElements(array);
    switch (zxGetClassCode(array)) {
        case zxCellClass:
            return listOf(array, [&](std::size_t index) { return arrayToPython(zxGetCell(array, index), depth + 1); });
        case zxStructClass:
            return count == 1 ? structToPython(array, 0, depth)
                              : listOf(array, [&](std::size_t index) { return structToPython(array, index, depth); });
        case zxObjectClass:
            return objectsToPython(array, depth);
        default:
            return count == 1 ? numberToPython(array) : numbersToPython(array);
    }
}

Ref toPython(OrdoValue const& value) {
    switch (value.kind()) {
        case OrdoValue::Kind::Nothing:
            return none();
        case OrdoValue::Kind::Logical:
            return Ref::borrow(value.logicalContent() ? Py_True : Py_False);
        case OrdoValue::Kind::Int32:
        case OrdoValue::Kind::UInt32:
        case OrdoValue::Kind::Int64:
            return Ref(PyLong_FromLong(value.integerContent()));
        case OrdoValue::Kind::UInt64:
            return Ref(PyLong_FromUnsignedLong(value.unsignedContent()));
        case OrdoValue::Kind::Double:
            return Ref(PyFloat_FromDouble(value.realContent()));
        case OrdoValue::Kind::Text:
            return textToPython(value.textContent());
        case OrdoValue::Kind::Bytes:
            return bytesToPython(value.bytesContent());
        case OrdoValue::Kind::Enumeration:
            return enumerationToPython(value.enumerationClass(), value.enumerationNumber());
        case OrdoValue::Kind::Object:
            return wrap(*value.object());
        case OrdoValue::Kind::Array:
            break;
    }
    if (zxArray const* const array = value.arrayContent(); zxIsNumeric(array) || zxIsLogical(array)) {
        return arrayToPython(array);
    }
    // Convert a copy: values in it then belong to the reader, and making objects may run code of scripts, which may
    // replace the stored array.
    return arrayToPython(value.toArray().get());
}

}  // namespace host
