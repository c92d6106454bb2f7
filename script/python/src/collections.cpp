#include "collections.h"

#include "errors.h"
#include "from_python.h"
#include "objects.h"
#include "text.h"
#include "to_python.h"

#include <ordo/error.h>

#include <memory>
#include <string>
#include <utility>

namespace host {
namespace {

using ordo::CollectionKind;
using ordo::OrdoValue;

bool isMapping(CollectionKind kind) { return kind == CollectionKind::Map || kind == CollectionKind::Multimap; }

ordo::OrdoCollection const& collectionOf(PyObject* self) { return *instance(self).object->getClass().collection(); }

/// Whether a member can still be used. Values always can.
bool isAlive(OrdoValue const& member) {
    if (member.kind() != OrdoValue::Kind::Object) {
        return true;
    }
    ordo::ValidityCheck const check = member.object()->getClass().validityCheck();
    return check == nullptr || check(member.object()->native());
}

/// The content of a collection at one moment: the members, and for maps their keys.
struct Snapshot {
    std::vector<OrdoValue> members;
    std::vector<OrdoValue> keys;  // empty unless the collection is a map
};

Snapshot snapshotOf(PyObject* self) {
    void* const native = validNative(self);
    ordo::OrdoCollection const& collection = collectionOf(self);
    Snapshot snapshot{collection.members(native), {}};
    if (isMapping(collection.kind())) {
        snapshot.keys = collection.keys(native);
        snapshot.keys.resize(snapshot.members.size());
    }
    return snapshot;
}

/// Iterates over a snapshot and skips members that have died since.
struct Iterator {
    PyObject_HEAD Snapshot* snapshot;
    std::size_t next;
    bool isBackward;
};

PyTypeObject* iteratorType = nullptr;

Iterator& iteratorOf(PyObject* object) { return *reinterpret_cast<Iterator*>(object); }

PyObject* makeIterator(PyObject* self, bool isBackward) {
    auto snapshot = std::make_unique<Snapshot>(snapshotOf(self));
    Iterator* const made = PyObject_New(Iterator, iteratorType);
    if (made == nullptr) {
        throw PythonError();
    }
    made->next = 0;
    made->isBackward = isBackward;
    made->snapshot = snapshot.release();
    return reinterpret_cast<PyObject*>(made);
}

PyObject* iterate(PyObject* self) noexcept {
    return guarded([&] { return makeIterator(self, false); });
}

PyObject* iterateBackward(PyObject* self, PyObject*) noexcept {
    return guarded([&] { return makeIterator(self, true); });
}

PyObject* nextMember(PyObject* self) noexcept {
    return guarded([&]() -> PyObject* {
        Iterator& iterator = iteratorOf(self);
        Snapshot const& snapshot = *iterator.snapshot;
        std::size_t const size = snapshot.members.size();
        while (iterator.next < size) {
            std::size_t const step = iterator.next++;
            std::size_t const place = iterator.isBackward ? size - 1 - step : step;
            if (isAlive(snapshot.members[place])) {
                return toPython(snapshot.keys.empty() ? snapshot.members[place] : snapshot.keys[place]).release();
            }
        }
        return nullptr;
    });
}

PyObject* remainingLength(PyObject* self, PyObject*) noexcept {
    Iterator const& iterator = iteratorOf(self);
    return PyLong_FromSize_t(iterator.snapshot->members.size() - iterator.next);
}

void freeIterator(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    delete iteratorOf(self).snapshot;
    PyObject_Free(self);
    Py_DECREF(type);
}

Py_ssize_t length(PyObject* self) noexcept {
    return guarded(Py_ssize_t{-1}, [&] { return static_cast<Py_ssize_t>(collectionOf(self).size(validNative(self))); });
}

/// Converts a value to search for; false if no collection could contain it.
bool isValue(PyObject* object, OrdoValue& value) {
    try {
        value = fromPython(object);
        return true;
    } catch (keel::core::except::Exception<ordo::Failure> const&) {
        return false;
    }
}

int contains(PyObject* self, PyObject* member) noexcept {
    return guarded(-1, [&] {
        OrdoValue value;
        bool const isOne = isValue(member, value);
        void* const native = validNative(self);
        return isOne && collectionOf(self).contains(native, value) ? 1 : 0;
    });
}

Ref listOf(std::vector<OrdoValue> const& values) {
    Ref list(PyList_New(static_cast<Py_ssize_t>(values.size())));
    for (std::size_t i = 0; i < values.size(); ++i) {
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(i), toPython(values[i]).release());
    }
    return list;
}

PyObject* memberAt(PyObject* self, Py_ssize_t index) {
    void* const native = validNative(self);
    ordo::OrdoCollection const& collection = collectionOf(self);
    auto const size = static_cast<Py_ssize_t>(collection.size(native));
    Py_ssize_t const place = index < 0 ? index + size : index;
    if (place < 0 || place >= size) {
        ordo::raiseWith(ordo::failures::IndexOutOfRange, {std::to_string(index), std::to_string(size)});
    }
    return toPython(collection.at(native, static_cast<std::size_t>(place))).release();
}

PyObject* slice(PyObject* self, PyObject* range) {
    Py_ssize_t start = 0;
    Py_ssize_t stop = 0;
    Py_ssize_t step = 0;
    checked(PySlice_Unpack(range, &start, &stop, &step));  // may run code of scripts
    void* const native = validNative(self);
    ordo::OrdoCollection const& collection = collectionOf(self);
    Py_ssize_t const count =
        PySlice_AdjustIndices(static_cast<Py_ssize_t>(collection.size(native)), &start, &stop, step);
    std::vector<OrdoValue> members;
    for (Py_ssize_t i = 0; i < count; ++i) {
        members.push_back(collection.at(native, static_cast<std::size_t>(start + i * step)));
    }
    return listOf(members).release();
}

PyObject* sequenceItem(PyObject* self, PyObject* key) noexcept {
    return guarded([&] {
        if (PySlice_Check(key)) {
            return slice(self, key);
        }
        if (PyIndex_Check(key) == 0) {
            ordo::raiseWith(ordo::failures::WrongType, {describeObject(key), "a position or a slice"});
        }
        Py_ssize_t const index = PyNumber_AsSsize_t(key, nullptr);  // a huge index stays out of range
        if (index == -1 && PyErr_Occurred() != nullptr) {
            throw PythonError();
        }
        return memberAt(self, index);
    });
}

PyObject* itemByPosition(PyObject* self, Py_ssize_t index) noexcept {
    return guarded([&] { return memberAt(self, index); });
}

/// The members under a key: one for a map, a list for a multimap, null if there is none.
Ref membersUnder(PyObject* self, PyObject* key) {
    OrdoValue value;
    bool const isOne = isValue(key, value);
    void* const native = validNative(self);
    ordo::OrdoCollection const& collection = collectionOf(self);
    std::vector<OrdoValue> const found = isOne ? collection.find(native, value) : std::vector<OrdoValue>();
    if (found.empty()) {
        return {};
    }
    return collection.kind() == CollectionKind::Map ? toPython(found.front()) : listOf(found);
}

/// The repr of a key, or a description of its type if that fails.
std::string describeKey(PyObject* key) {
    PyObject* const shown = PyObject_Repr(key);
    if (shown == nullptr) {
        if (PyErr_ExceptionMatches(PyExc_Exception) == 0) {
            throw PythonError();
        }
        PyErr_Clear();
        return "like " + describeObject(key);
    }
    return nameFromPython(Ref(shown).get());
}

PyObject* mappedItem(PyObject* self, PyObject* key) noexcept {
    return guarded([&] {
        Ref found = membersUnder(self, key);
        if (!found) {
            ordo::raiseWith(ordo::failures::NoSuchKey, {describeKey(key)});
        }
        return found.release();
    });
}

PyObject* mappedItemOr(PyObject* self, PyObject* const* arguments, Py_ssize_t count) noexcept {
    return guarded([&] {
        if (count < 1 || count > 2) {
            ordo::raiseWith(ordo::failures::WrongArguments, {"get", "get(key, default = None)"});
        }
        Ref found = membersUnder(self, arguments[0]);
        return found ? found.release() : Ref::borrow(count == 2 ? arguments[1] : Py_None).release();
    });
}

enum class Part { Keys, Values, Items };

/// The present content of a map, as a dict.
Ref dictOf(Snapshot const& snapshot) {
    Ref dict(PyDict_New());
    for (std::size_t i = 0; i < snapshot.members.size(); ++i) {
        if (isAlive(snapshot.members[i])) {
            Ref const key = toPython(snapshot.keys[i]);
            Ref const member = toPython(snapshot.members[i]);
            checked(PyDict_SetItem(dict.get(), key.get(), member.get()));
        }
    }
    return dict;
}

/// The present entries of a multimap, as a list; a dict can't have a key twice.
Ref entriesOf(Snapshot const& snapshot, Part part) {
    Ref list(PyList_New(0));
    for (std::size_t i = 0; i < snapshot.members.size(); ++i) {
        if (!isAlive(snapshot.members[i])) {
            continue;
        }
        Ref entry = toPython(part == Part::Values ? snapshot.members[i] : snapshot.keys[i]);
        if (part == Part::Items) {
            Ref const member = toPython(snapshot.members[i]);
            entry = Ref(PyTuple_Pack(2, entry.get(), member.get()));
        }
        checked(PyList_Append(list.get(), entry.get()));
    }
    return list;
}

template <Part part>
PyObject* partsOf(PyObject* self, PyObject*) noexcept {
    return guarded([&]() -> PyObject* {
        Snapshot const snapshot = snapshotOf(self);
        if (collectionOf(self).kind() == CollectionKind::Multimap) {
            return entriesOf(snapshot, part).release();
        }
        constexpr char const* view = part == Part::Keys ? "keys" : part == Part::Values ? "values" : "items";
        return PyObject_CallMethod(dictOf(snapshot).get(), view, nullptr);
    });
}

PyObject* makeSet(PyObject*, PyObject* members) noexcept { return PySet_New(members); }

template <class Function>
PyCFunction asFunction(Function* function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef const sequenceMethods[] = {
    {"__reversed__", iterateBackward, METH_NOARGS, "Goes over the members from the last to the first."},
};
PyMethodDef const setMethods[] = {
    {"_from_iterable", makeSet, METH_O | METH_STATIC, "What operations on sets give is a set of its own."},
};
PyMethodDef const mapMethods[] = {
    {"get", asFunction(mappedItemOr), METH_FASTCALL, "What stands under a key, or a default."},
    {"keys", partsOf<Part::Keys>, METH_NOARGS,
     "The keys as they are now; a multimap's in a list, each as often as it has members."},
    {"values", partsOf<Part::Values>, METH_NOARGS, "The members as they are now."},
    {"items", partsOf<Part::Items>, METH_NOARGS, "Pairs of a key and a member, as they are now."},
};

void addMethods(PyTypeObject* type, std::span<PyMethodDef const> methods) {
    for (PyMethodDef const& method : methods) {
        auto* const definition = const_cast<PyMethodDef*>(&method);  // the interpreter doesn't change it
        bool const isStatic = (method.ml_flags & METH_STATIC) != 0;
        Ref descriptor(isStatic ? PyCFunction_New(definition, nullptr) : PyDescr_NewMethod(type, definition));
        if (isStatic) {
            descriptor = Ref(PyStaticMethod_New(descriptor.get()));
        }
        checked(PyObject_SetAttrString(reinterpret_cast<PyObject*>(type), method.ml_name, descriptor.get()));
    }
}

/// Copies methods from an abstract class of collections, which implements them by the basic operations.
void borrowMethods(PyTypeObject* type, PyObject* abstract, std::span<char const* const> names) {
    for (char const* const name : names) {
        Ref const method(PyObject_GetAttrString(abstract, name));
        checked(PyObject_SetAttrString(reinterpret_cast<PyObject*>(type), name, method.get()));
    }
}

char const* abstractName(CollectionKind kind) {
    return kind == CollectionKind::Sequence ? "Sequence" : kind == CollectionKind::Set ? "Set" : "Mapping";
}

}  // namespace

void setUpCollections() {
    static PyMethodDef methods[] = {
        {"__length_hint__", remainingLength, METH_NOARGS, "How many members are left at most."},
        {},
    };
    PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(freeIterator)},
        {Py_tp_iter, reinterpret_cast<void*>(PyObject_SelfIter)},
        {Py_tp_iternext, reinterpret_cast<void*>(nextMember)},
        {Py_tp_methods, methods},
        {0, nullptr},
    };
    PyType_Spec spec{"ordo.CollectionIterator", sizeof(Iterator), 0,
                     Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_IMMUTABLETYPE, slots};
    iteratorType = reinterpret_cast<PyTypeObject*>(Ref(PyType_FromSpec(&spec)).release());
}

void addCollectionSlots(ordo::OrdoCollection const& collection, std::vector<PyType_Slot>& slots) {
    slots.push_back({Py_tp_iter, reinterpret_cast<void*>(iterate)});
    slots.push_back({Py_sq_contains, reinterpret_cast<void*>(contains)});
    slots.push_back({Py_sq_length, reinterpret_cast<void*>(length)});
    if (isMapping(collection.kind())) {
        slots.push_back({Py_mp_length, reinterpret_cast<void*>(length)});
        slots.push_back({Py_mp_subscript, reinterpret_cast<void*>(mappedItem)});
    } else if (collection.kind() == CollectionKind::Sequence) {
        slots.push_back({Py_mp_length, reinterpret_cast<void*>(length)});
        slots.push_back({Py_mp_subscript, reinterpret_cast<void*>(sequenceItem)});
        slots.push_back({Py_sq_item, reinterpret_cast<void*>(itemByPosition)});
    }
}

void finishCollection(ordo::OrdoCollection const& collection, PyTypeObject* type) {
    Ref const module(PyImport_ImportModule("collections.abc"));
    Ref const abstract(PyObject_GetAttrString(module.get(), abstractName(collection.kind())));
    if (collection.kind() == CollectionKind::Sequence) {
        constexpr char const* names[] = {"index", "count"};
        addMethods(type, sequenceMethods);
        borrowMethods(type, abstract.get(), names);
    } else if (collection.kind() == CollectionKind::Set) {
        constexpr char const* names[] = {"__and__",  "__rand__", "__or__", "__ror__", "__sub__", "__rsub__",  "__xor__",
                                         "__rxor__", "__le__",   "__lt__", "__ge__",  "__gt__",  "isdisjoint"};
        addMethods(type, setMethods);
        borrowMethods(type, abstract.get(), names);
    } else {
        addMethods(type, mapMethods);
    }
    Ref const registered(PyObject_CallMethod(abstract.get(), "register", "O", type));
}

}  // namespace host
