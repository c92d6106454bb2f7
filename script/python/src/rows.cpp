#include "rows.h"

#include "objects.h"

#include <ordo/class.h>
#include <ordo/error.h>

#include <zx/objects.h>
#include <zx/values.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace host {

using ordo::OrdoValue;

namespace {

ItemKind kindOf(PyObject* item) {
    // NumPy's scalars that aren't subclasses of Python's numbers.
    std::string_view const type = Py_TYPE(item)->tp_name;
    if (PyBool_Check(item) || type == "numpy.bool_" || type == "numpy.bool") return ItemKind::Bool;
    if (PyLong_Check(item)) return enumerationOf(item) != nullptr ? ItemKind::Literal : ItemKind::Integer;
    if (PyFloat_Check(item) || type == "numpy.float32") return ItemKind::Real;
    if (PyComplex_Check(item) || type == "numpy.complex64") return ItemKind::Complex;
    if (PyDict_Check(item)) return ItemKind::Dict;
    // Arrays may support the index protocol without being integers.
    return PyIndex_Check(item) != 0 && PySequence_Check(item) == 0 ? ItemKind::Integer : ItemKind::Other;
}

template <class T, class Convert>
zx::Array row(PyObject* tuple, Convert&& convert) {
    auto const size = static_cast<std::size_t>(PyTuple_GET_SIZE(tuple));
    constexpr int isComplex = std::is_same_v<T, std::complex<double>> ? 1 : 0;
    zx::Array array(zxCreateNumericMatrix(1, size, zx::classCodeOf<T>(), isComplex));
    for (std::size_t i = 0; i < size; ++i) {
        zx::valuesForWriting<T>(array.get())[i] = convert(PyTuple_GET_ITEM(tuple, static_cast<Py_ssize_t>(i)));
    }
    return array;
}

/// A 1 by n array of integers: int64 if that holds all of them, else uint64; null if neither does.
zx::Array integerRow(PyObject* tuple) {
    std::vector<OrdoValue> values;
    bool fitsInt64 = true;
    bool fitsUInt64 = true;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(tuple); ++i) {
        Ref const number(PyNumber_Index(PyTuple_GET_ITEM(tuple, i)));
        OrdoValue const& value = values.emplace_back(integerValue(number.get()));
        fitsInt64 = fitsInt64 && value.kind() == OrdoValue::Kind::Int64;
        fitsUInt64 = fitsUInt64 && value.kind() != OrdoValue::Kind::Double &&
                     (value.kind() == OrdoValue::Kind::UInt64 || value.integerContent() >= 0);
    }
    if (!fitsInt64 && !fitsUInt64) {
        return nullptr;
    }
    zx::Array array(zxCreateNumericMatrix(1, values.size(), fitsInt64 ? zxInt64Class : zxUint64Class));
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (fitsInt64) {
            zx::valuesForWriting<std::int64_t>(array.get())[i] = values[i].integerContent();
        } else {
            zx::valuesForWriting<std::uint64_t>(array.get())[i] = values[i].unsignedContent();
        }
    }
    return array;
}

/// A 1 by n array of doubles or complex numbers; null if it would change the value of one of the integers.
template <class T>
zx::Array realRow(PyObject* tuple) {
    bool exact = true;
    zx::Array array = row<T>(tuple, [&](PyObject* item) -> T {
        ItemKind const kind = kindOf(item);
        if (kind == ItemKind::Integer) {
            Ref const number(PyNumber_Index(item));
            OrdoValue const value = integerValue(number.get());
            double const real = value.toDouble();
            exact = exact && value.kind() != OrdoValue::Kind::Double && std::fabs(real) < 9007199254740992.0;
            return real;
        }
        // The real part of a plain double is the double itself.
        Py_complex const number = PyComplex_AsCComplex(item);
        if (number.real == -1.0 && PyErr_Occurred() != nullptr) {
            throw PythonError();
        }
        if constexpr (std::is_same_v<T, double>) {
            return number.real;
        } else {
            return {number.real, number.imag};
        }
    });
    return exact ? std::move(array) : nullptr;
}

}  // namespace

ItemKind kindOfAll(PyObject* tuple) {
    PyObject* const first = PyTuple_GET_ITEM(tuple, 0);
    ItemKind all = kindOf(first);
    for (Py_ssize_t i = 1; i < PyTuple_GET_SIZE(tuple); ++i) {
        PyObject* const item = PyTuple_GET_ITEM(tuple, i);
        ItemKind const kind = kindOf(item);
        if (kind <= ItemKind::Complex && all <= ItemKind::Complex) {
            all = std::max(all, kind);
        } else if (kind != all || (kind == ItemKind::Literal && Py_TYPE(item) != Py_TYPE(first))) {
            return ItemKind::Other;
        }
    }
    return all;
}

zx::Array rowFrom(PyObject* tuple, ItemKind kind) {
    switch (kind) {
        case ItemKind::Integer:
            return integerRow(tuple);
        case ItemKind::Real:
            return realRow<double>(tuple);
        case ItemKind::Complex:
            return realRow<std::complex<double>>(tuple);
        case ItemKind::Bool:
            return row<bool>(tuple, [](PyObject* item) { return checked(PyObject_IsTrue(item)) != 0; });
        case ItemKind::Literal:
            break;
        default:
            return nullptr;
    }
    zx::Array numbers =
        row<std::int32_t>(tuple, [](PyObject* item) { return static_cast<std::int32_t>(PyLong_AsLong(item)); });
    ordo::OrdoClass const& enumeration = *enumerationOf(PyTuple_GET_ITEM(tuple, 0));
    zx::Array array(zxCreateObjectFromUnderlying(enumeration.name().text(), numbers.get()));
    static_cast<void>(numbers.release());
    return array;
}

OrdoValue integerValue(PyObject* number) {
    int overflow = 0;
    long long const value = PyLong_AsLongLongAndOverflow(number, &overflow);
    if (overflow == 0) {
        if (value == -1 && PyErr_Occurred() != nullptr) {
            throw PythonError();
        }
        return OrdoValue::int64(value);
    }
    if (overflow > 0) {
        unsigned long long const large = PyLong_AsUnsignedLongLong(number);
        if (PyErr_Occurred() == nullptr) {
            return OrdoValue::uint64(large);
        }
        PyErr_Clear();
    }
    double const nearest = PyLong_AsDouble(number);
    if (PyErr_Occurred() != nullptr) {
        PyErr_Clear();
        ordo::raiseWith(ordo::failures::OutOfRange, {"an integer of that size", "any number"});
    }
    return OrdoValue::real(nearest);
}

}  // namespace host
