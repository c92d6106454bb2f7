#include "from_python.h"

#include "buffers.h"
#include "errors.h"
#include "nesting.h"
#include "objects.h"
#include "rows.h"
#include "text.h"

#include <ordo/class.h>
#include <ordo/error.h>

#include <zx/containers.h>
#include <zx/objects.h>
#include <zx/text.h>
#include <zx/values.h>

#include <complex>
#include <string>
#include <unordered_map>
#include <vector>

namespace host {
namespace {

using ordo::OrdoValue;
using ordo::failures::NestedTooDeep;
using ordo::failures::OutOfRange;
using ordo::failures::TooLarge;
using ordo::failures::WrongType;

[[noreturn]] void refuse(PyObject* object) { ordo::raiseWith(WrongType, {describeObject(object), "a value"}); }

/// Limits the memory that one value may take. A list that is referenced in many places is copied for each, so that a
/// few small nested lists could fill the whole memory.
class Bulk {
public:
    static void begin() noexcept { taken = 0; }
    /// Accounts for about this many bytes; throws when the limit is exceeded.
    static void take(std::size_t bytes) {
        taken += bytes;
        if (taken > most) ordo::raise(TooLarge);
    }

private:
    static constexpr std::size_t most = std::size_t{2} << 30;
    inline static thread_local std::size_t taken = 0;
};

/// Refuses a value that contains itself, and limits the nesting.
class Nesting {
public:
    Nesting(PyObject* object, Py_ssize_t items, int depth) {
        if (depth == 0) Bulk::begin();
        Bulk::take(256 + 32 * static_cast<std::size_t>(items));
        // Converting may run code that converts another value, so the interpreter's own limit holds as well.
        if (Py_EnterRecursiveCall(" while a value is converted") != 0) {
            throw PythonError();
        }
        if (depth >= deepest || Py_ReprEnter(object) != 0) {
            Py_LeaveRecursiveCall();
            if (PyErr_Occurred() != nullptr) {
                throw PythonError();
            }
            ordo::raise(NestedTooDeep);
        }
        object_ = object;
    }
    Nesting(Nesting const&) = delete;
    Nesting& operator=(Nesting const&) = delete;
    ~Nesting() {
        Py_ReprLeave(object_);
        Py_LeaveRecursiveCall();
    }

private:
    PyObject* object_ = nullptr;
};

/// The field numbers of a struct array, found by name.
class Fields {
public:
    explicit Fields(zxArray* array) : array_(array) {}

    /// The number of a field. A new field is added to every element, so that even a few new fields can take much
    /// memory.
    std::size_t numberOf(std::string const& name) {
        auto const known = numbers_.find(name);
        if (known != numbers_.end()) return known->second;
        Bulk::take(name.size() + bytesOfPlace * zxGetNumberOfElements(array_));
        std::size_t const number = zxAddField(array_, name);
        numbers_.emplace(name, number);
        return number;
    }
    zxArray* array() const noexcept { return array_; }

private:
    // An empty place takes a pointer, both here and in the copies that are made when the array is stored.
    static constexpr std::size_t bytesOfPlace = 6 * sizeof(void*);

    zxArray* array_;
    std::unordered_map<std::string, std::size_t> numbers_;
};

/// Converts the items of a dict and stores them in one element of a struct array.
void fillStruct(Fields& fields, std::size_t index, PyObject* dict, int depth) {
    Nesting const nesting(dict, PyDict_Size(dict), depth);
    Ref const items(PyDict_Items(dict));  // a new list: converting may run code that changes the dict
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items.get()); ++i) {
        PyObject* const key = PyTuple_GET_ITEM(PyList_GET_ITEM(items.get(), i), 0);
        if (!PyUnicode_Check(key)) {
            ordo::raiseWith(WrongType, {describeObject(key), "a text as the name of a field"});
        }
        zx::Array value = arrayFromPython(PyTuple_GET_ITEM(PyList_GET_ITEM(items.get(), i), 1), depth + 1);
        zxSetFieldByNumber(fields.array(), index, fields.numberOf(bytesFromPython(key)), value.get());
        static_cast<void>(value.release());
    }
}

zx::Array structFromDict(PyObject* dict, int depth) {
    zx::Array array(zxCreateStructMatrix(1, 1));
    Fields fields(array.get());
    fillStruct(fields, 0, dict, depth);
    return array;
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
    Ref const tuple(PySequence_Tuple(list));  // a new tuple: converting may run code that changes the list
    Nesting const nesting(list, PyTuple_GET_SIZE(tuple.get()), depth);
    auto const size = static_cast<std::size_t>(PyTuple_GET_SIZE(tuple.get()));
    if (size == 0) {
        return zx::Array(zxCreateCellMatrix(0, 0));
    }
    ItemKind const kind = kindOfAll(tuple.get());
    if (zx::Array array = rowFrom(tuple.get(), kind)) {
        return array;
    }
    if (kind != ItemKind::Dict) {
        return cellFrom(tuple.get(), depth);
    }
    zx::Array structs(zxCreateStructMatrix(1, size));
    Fields fields(structs.get());
    for (std::size_t i = 0; i < size; ++i) {
        fillStruct(fields, i, PyTuple_GET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i)), depth + 1);
    }
    return structs;
}

/// Converts a plain object to a struct of its attributes; null if it isn't a plain object.
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

/// The text of a uuid.UUID; null for any other object.
Ref uuidText(PyObject* object) {
    static PyObject* uuidClass = nullptr;
    if (uuidClass == nullptr) {
        // An object can be a UUID only if that module has been imported.
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
    // An integer keeps its value or is refused: converting it to double could change it.
    OrdoValue const value = valueOf(object, depth);
    if (value.kind() == OrdoValue::Kind::Double && PyLong_Check(object)) {
        ordo::raiseWith(OutOfRange, {"an integer of that size", "a 64-bit integer"});
    }
    return value.toArray();
}

}  // namespace host
