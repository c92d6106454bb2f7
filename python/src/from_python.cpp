#include "from_python.h"

#include "classes.h"
#include "text.h"

#include <ordo/class.h>
#include <ordo/error.h>

#include <zx/containers.h>
#include <zx/objects.h>
#include <zx/text.h>
#include <zx/values.h>

#include <cmath>
#include <string>
#include <vector>

namespace host {
namespace {

using ordo::OrdoValue;
using ordo::failures::NestedTooDeep;
using ordo::failures::OutOfRange;
using ordo::failures::TooLarge;
using ordo::failures::WrongType;

[[noreturn]] void refuse(PyObject* object) { ordo::raiseWith(WrongType, {describeObject(object), "a value"}); }

/// An int of any size: one that no 64-bit integer holds goes as the double nearest to it, and so fits no integer.
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
        ordo::raiseWith(OutOfRange, {"an integer of that size", "any number"});
    }
    return OrdoValue::real(nearest);
}

/// Bounds what one value may become. Where a script holds one list at many places, each gets a copy, so that a few
/// small lists in one another could fill any memory.
class Bulk {
public:
    static void begin() noexcept { taken = 0; }
    /// Accounts for about that many bytes.
    static void take(std::size_t bytes) {
        taken += bytes;
        if (taken > most) ordo::raise(TooLarge);
    }

private:
    static constexpr std::size_t most = std::size_t{2} << 30;
    inline static thread_local std::size_t taken = 0;
};

/// Keeps a value that is being converted from being met again inside itself, and the nesting within bounds.
class Nesting {
public:
    Nesting(PyObject* object, Py_ssize_t items, int depth) {
        if (depth == 0) Bulk::begin();
        Bulk::take(256 + 32 * static_cast<std::size_t>(items));
        if (depth >= deepest || Py_ReprEnter(object) != 0) {
            if (PyErr_Occurred() != nullptr) {
                throw PythonError();
            }
            ordo::raise(NestedTooDeep);
        }
        object_ = object;
    }
    Nesting(Nesting const&) = delete;
    Nesting& operator=(Nesting const&) = delete;
    ~Nesting() { Py_ReprLeave(object_); }

private:
    PyObject* object_ = nullptr;
};

/// Puts the items of a dict into one element of a struct array.
void fillStruct(zxArray* array, std::size_t index, PyObject* dict, int depth) {
    Nesting const nesting(dict, PyDict_Size(dict), depth);
    Ref const items(PyDict_Items(dict));  // a list of our own: what is converted may change the dict
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items.get()); ++i) {
        PyObject* const key = PyTuple_GET_ITEM(PyList_GET_ITEM(items.get(), i), 0);
        if (!PyUnicode_Check(key)) {
            ordo::raiseWith(WrongType, {describeObject(key), "a text as the name of a field"});
        }
        zx::Array value = arrayFromPython(PyTuple_GET_ITEM(PyList_GET_ITEM(items.get(), i), 1), depth + 1);
        zxSetField(array, index, bytesFromPython(key), value.get());
        static_cast<void>(value.release());
    }
}

zx::Array structFromDict(PyObject* dict, int depth) {
    zx::Array array(zxCreateStructMatrix(1, 1));
    fillStruct(array.get(), 0, dict, depth);
    return array;
}

/// What all items of a list have in common, which decides what becomes of it.
struct Items {
    bool bools = true;
    bool integers = true;
    bool numbers = true;
    bool dicts = true;
    ordo::OrdoClass* enumeration = nullptr;
    bool enumerations = true;
};

Items survey(PyObject* tuple) {
    Items found;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(tuple); ++i) {
        PyObject* const item = PyTuple_GET_ITEM(tuple, i);
        ordo::OrdoClass* const enumeration = enumerationOf(item);
        bool const isBool = PyBool_Check(item);
        bool const isInteger = !isBool && enumeration == nullptr && (PyLong_Check(item) || isIntegerScalar(item));
        found.bools = found.bools && isBool;
        found.integers = found.integers && isInteger;
        found.numbers = found.numbers && (isInteger || PyFloat_Check(item));
        found.dicts = found.dicts && PyDict_Check(item);
        found.enumerations =
            found.enumerations && enumeration != nullptr && (i == 0 || enumeration == found.enumeration);
        found.enumeration = enumeration;
    }
    return found;
}

template <class T, class Convert>
zx::Array row(PyObject* tuple, Convert&& convert) {
    auto const size = static_cast<std::size_t>(PyTuple_GET_SIZE(tuple));
    zx::Array array(zxCreateNumericMatrix(1, size, zx::classCodeOf<T>()));
    for (std::size_t i = 0; i < size; ++i) {
        zx::valuesForWriting<T>(array.get())[i] = convert(PyTuple_GET_ITEM(tuple, static_cast<Py_ssize_t>(i)));
    }
    return array;
}

/// A row of integers, int64 if that holds all of them, else uint64; null if neither does.
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

/// A row of doubles; null if one of the integers among them has none that is exactly as large.
zx::Array realRow(PyObject* tuple) {
    bool exact = true;
    zx::Array array = row<double>(tuple, [&](PyObject* item) {
        if (PyFloat_Check(item)) {
            return PyFloat_AS_DOUBLE(item);
        }
        Ref const number(PyNumber_Index(item));
        OrdoValue const value = integerValue(number.get());
        double const real = value.toDouble();
        exact = exact && value.kind() != OrdoValue::Kind::Double && std::fabs(real) < 9007199254740992.0;
        return real;
    });
    return exact ? std::move(array) : nullptr;
}

zx::Array cellFrom(PyObject* tuple, int depth) {
    auto const size = static_cast<std::size_t>(PyTuple_GET_SIZE(tuple));
    zx::Array array(zxCreateCellMatrix(1, size));
    for (std::size_t i = 0; i < size; ++i) {
        zx::Array element = arrayFromPython(PyTuple_GET_ITEM(tuple, static_cast<Py_ssize_t>(i)), depth + 1);
        zxSetCell(array.get(), i, element.get());
        static_cast<void>(element.release());
    }
    return array;
}

zx::Array arrayFromList(PyObject* list, int depth) {
    Ref const tuple(PySequence_Tuple(list));  // of our own: what is converted may change the list
    Nesting const nesting(list, PyTuple_GET_SIZE(tuple.get()), depth);
    Items const items = survey(tuple.get());
    auto const size = static_cast<std::size_t>(PyTuple_GET_SIZE(tuple.get()));
    if (size == 0) {
        return zx::Array(zxCreateCellMatrix(0, 0));
    }
    if (items.bools) {
        return row<bool>(tuple.get(), [](PyObject* item) { return item == Py_True; });
    }
    if (items.enumerations) {
        zx::Array numbers = row<std::int32_t>(
            tuple.get(), [](PyObject* item) { return static_cast<std::int32_t>(PyLong_AsLong(item)); });
        zx::Array array(zxCreateObjectFromUnderlying(items.enumeration->name().text(), numbers.get()));
        static_cast<void>(numbers.release());
        return array;
    }
    zx::Array numbers = items.integers ? integerRow(tuple.get()) : items.numbers ? realRow(tuple.get()) : nullptr;
    if (numbers != nullptr) {
        return numbers;
    }
    if (!items.dicts) {
        return cellFrom(tuple.get(), depth);
    }
    zx::Array structs(zxCreateStructMatrix(1, size));
    for (std::size_t i = 0; i < size; ++i) {
        fillStruct(structs.get(), i, PyTuple_GET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i)), depth + 1);
    }
    return structs;
}

/// A plain object, as a struct of its attributes; null if it isn't one.
zx::Array structFromObject(PyObject* object, int depth) {
    bool const isOwn = !PyType_Check(object) && !PyModule_Check(object) && PyCallable_Check(object) == 0;
    PyObject** const place = isOwn ? _PyObject_GetDictPtr(object) : nullptr;
    if (!isOwn || (place == nullptr && !PyType_HasFeature(Py_TYPE(object), Py_TPFLAGS_MANAGED_DICT))) {
        return nullptr;
    }
    Ref const attributes(PyObject_GetAttrString(object, "__dict__"));
    Nesting const nesting(object, 0, depth);
    return PyDict_Check(attributes.get()) ? structFromDict(attributes.get(), depth + 1) : nullptr;
}

/// The text of a uuid.UUID; null for everything else.
Ref uuidText(PyObject* object) {
    static PyObject* uuidClass = nullptr;
    if (uuidClass == nullptr) {
        // An object can be one only if its module has been imported.
        PyObject* const module = PyDict_GetItemString(PyImport_GetModuleDict(), "uuid");
        uuidClass = module != nullptr ? PyObject_GetAttrString(module, "UUID") : nullptr;
        PyErr_Clear();
    }
    if (uuidClass == nullptr || checked(PyObject_IsInstance(object, uuidClass)) == 0) {
        return {};
    }
    return Ref(PyObject_Str(object));
}

OrdoValue valueOf(PyObject* object, int depth) {
    if (PyLong_CheckExact(object)) {
        return integerValue(object);
    }
    if (PyBool_Check(object)) {
        return OrdoValue::logical(object == Py_True);
    }
    if (PyUnicode_Check(object)) {
        if (depth > 0) Bulk::take(2 * static_cast<std::size_t>(PyUnicode_GET_LENGTH(object)));
        return textValue(object);
    }
    if (object == Py_None) {
        return {};
    }
    if (PyFloat_Check(object)) {
        return OrdoValue::real(PyFloat_AS_DOUBLE(object));
    }
    if (isInstance(object)) {
        return OrdoValue::fromObject(ordo::OrdoObject(instance(object).object));
    }
    if (PyLong_Check(object)) {
        if (ordo::OrdoClass* const enumeration = enumerationOf(object)) {
            return OrdoValue::enumeration(*enumeration, static_cast<std::int32_t>(PyLong_AsLong(object)));
        }
        return integerValue(object);
    }
    if (PyDict_Check(object)) {
        return OrdoValue::fromArray(structFromDict(object, depth));
    }
    if (PyList_Check(object) || PyTuple_Check(object)) {
        zx::Array array = arrayFromList(object, depth);
        return zxIsEmpty(array.get()) ? OrdoValue(zxCellClass) : OrdoValue::fromArray(std::move(array));
    }
    if (PyComplex_Check(object)) {
        Py_complex const number = PyComplex_AsCComplex(object);
        return OrdoValue::fromArray(zx::scalar(std::complex<double>(number.real, number.imag)));
    }
    if (PyBytes_Check(object) || PyByteArray_Check(object)) {
        refuse(object);
    }
    if (PyObject_CheckBuffer(object) != 0) {
        return OrdoValue::fromArray(arrayFromBuffer(object));
    }
    if (Ref const text = uuidText(object)) {
        return OrdoValue::text(textFromPython(text.get()));
    }
    if (PyIndex_Check(object) != 0) {
        Ref const number(PyNumber_Index(object));
        return integerValue(number.get());
    }
    zx::Array array = structFromObject(object, depth);
    if (array == nullptr) {
        refuse(object);
    }
    return OrdoValue::fromArray(std::move(array));
}

}  // namespace

OrdoValue fromPython(PyObject* object) { return valueOf(object, 0); }

zx::Array arrayFromPython(PyObject* object, int depth) {
    // An integer keeps its value or is refused: as a double it would be another one.
    OrdoValue const value = valueOf(object, depth);
    if (value.kind() == OrdoValue::Kind::Double && PyLong_Check(object)) {
        ordo::raiseWith(OutOfRange, {"an integer of that size", "a 64-bit integer"});
    }
    return value.toArray();
}

std::string describeObject(PyObject* object) {
    return std::string("an object of type '") + Py_TYPE(object)->tp_name + "'";
}

}  // namespace host
