#include "classes.h"

#include "attributes.h"
#include "collections.h"
#include "errors.h"
#include "instances.h"
#include "members.h"
#include "objects.h"
#include "text.h"
#include "transactions.h"

#include <ordo/error.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

namespace host {
namespace {

PyTypeObject* objectType = nullptr;  // base of all script classes but enumerations
PyTypeObject* metaType = nullptr;    // the class of script classes

template <class Function>
PyType_Slot slot(int number, Function* function) {
    return {number, reinterpret_cast<void*>(function)};
}

void freeInstance(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    Instance& object = instance(self);
    // Clear the script object's peer first: from here on, code that asks for its instance, such as a callback of a weak
    // reference, gets a new one.
    if (object.object->peer() == self) {
        object.object->setPeer(nullptr);
    }
    if (object.weakReferences != nullptr) {
        PyObject_ClearWeakRefs(self);
    }
    object.object->dropReference();
    type->tp_free(self);
    Py_DECREF(type);
}

int isTrue(PyObject* self) noexcept {
    return guarded(-1, [&] {
        Instance const& object = instance(self);
        if (!isValid(object)) {
            return 0;
        }
        ordo::OrdoCollection const* const collection = object.object->getClass().collection();
        return collection == nullptr || collection->size(object.native) != 0 ? 1 : 0;
    });
}

/// Copies an instance: values are copied; an object that has identity is returned itself.
PyObject* copyInstance(PyObject* self, PyObject*) noexcept {
    return guarded([&] { return wrap(*instance(self).object->copy()).release(); });
}

PyObject* refuseToReduce(PyObject* self, PyObject*) noexcept {
    PyErr_Format(PyExc_TypeError, "objects of class '%s' can't be pickled", Py_TYPE(self)->tp_name);
    return nullptr;
}

PyObject* makeInstance(PyTypeObject* type, PyObject* arguments, PyObject* keywords) noexcept {
    return guarded([&]() -> PyObject* {
        ordo::OrdoClass* const ordoClass = classOf(type);
        if (ordoClass == nullptr) {
            ordo::raiseWith(ordo::failures::AbstractClass, {type->tp_name});
        }
        return construct(*ordoClass, arguments, keywords);
    });
}

/// Refuses to derive from script classes: instances could then have attributes that the schema doesn't define.
PyObject* refuseClass(PyTypeObject*, PyObject*, PyObject*) noexcept {
    PyErr_SetString(PyExc_TypeError, "script classes can't be made or derived from in Python");
    return nullptr;
}

PyMethodDef instanceMethods[] = {
    {"__copy__", copyInstance, METH_NOARGS, "A value's copy; an object that has identity is itself."},
    {"__deepcopy__", copyInstance, METH_O, "The same, since there is nothing below."},
    {"__reduce_ex__", refuseToReduce, METH_O, "Script objects can't be pickled."},
    {},
};

PyMemberDef instanceMembers[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(Instance, weakReferences), READONLY, nullptr},
    {},
};

std::string docOf(ordo::OrdoClassInfo const& info) {
    std::string text(info.getDescription());
    if (!info.getDetailedDescription().empty()) {
        text += "\n\n" + std::string(info.getDetailedDescription());
    }
    return text;
}

/// Adds a class's members to its type, in the order of their definition.
void addMembers(ordo::OrdoClass& ordoClass, PyTypeObject* type) {
    auto const add = [&](ordo::InternedName name, Ref const& member) {
        Ref text = nameToPython(name.text());
        PyObject* interned = text.release();
        PyUnicode_InternInPlace(&interned);
        Ref const key(interned);
        checked(PyDict_SetItem(type->tp_dict, key.get(), member.get()));
    };
    if (!ordoClass.info().isEnumeration()) {
        for (auto const& property : ordoClass.properties()) {
            add(property->name(), makeProperty(*property, ordoClass, type));
        }
    }
    for (auto const& method : ordoClass.methods()) {
        if (method.get() != ordoClass.constructor()) {
            add(method->name(), makeMethod(*method, ordoClass, type));
        }
    }
}

/// Makes a type from its slots (PyType_Spec), below `base`, which scripts may be unable to derive from.
PyTypeObject* makeType(PyType_Spec& spec, PyTypeObject* base) {
    bool const isOpen = PyType_HasFeature(base, Py_TPFLAGS_BASETYPE);
    base->tp_flags |= Py_TPFLAGS_BASETYPE;
    PyObject* const made = PyType_FromSpecWithBases(&spec, reinterpret_cast<PyObject*>(base));
    if (!isOpen) {
        base->tp_flags &= ~Py_TPFLAGS_BASETYPE;
    }
    Ref type(made);
    Py_INCREF(metaType);
    Py_SET_TYPE(type.get(), metaType);
    return reinterpret_cast<PyTypeObject*>(type.release());
}

PyTypeObject* baseOf(ordo::OrdoClass& ordoClass) {
    if (ordoClass.info().isEnumeration()) {
        return &PyLong_Type;
    }
    return ordoClass.superclasses().empty() ? objectType : peerOf(*ordoClass.superclasses().front()).type;
}

PyObject* representLiteral(PyObject* self) noexcept {
    return guarded([&] {
        ordo::OrdoClass const& ordoClass = *classOf(Py_TYPE(self));
        auto const number = static_cast<std::int32_t>(PyLong_AsLong(self));
        std::string text(ordoClass.shortName().text());
        if (ordo::OrdoEnumInfo const* const literal = ordoClass.findEnumeration(number)) {
            return nameToPython(text + '.' + std::string(literal->getName().text())).release();
        }
        return nameToPython(text + '(' + std::to_string(number) + ')').release();
    });
}

PyTypeObject* typeFor(ordo::OrdoClass& ordoClass, ClassPeer& peer) {
    ordo::OrdoClassInfo const& info = ordoClass.info();
    std::string const doc = docOf(info);
    std::vector<PyType_Slot> slots{{Py_tp_doc, const_cast<char*>(doc.c_str())}, slot(Py_tp_new, makeInstance)};
    if (info.isEnumeration()) {
        slots.push_back(slot(Py_tp_repr, representLiteral));
        slots.push_back(slot(Py_tp_getattro, getAttribute));
        slots.push_back(slot(Py_tp_setattro, setAttribute));
    }
    if (peer.equals != nullptr) {
        slots.push_back(slot(Py_tp_richcompare, compare));
        slots.push_back(slot(Py_tp_hash, PyObject_HashNotImplemented));
    }
    if (info.collection() != nullptr) {
        addCollectionSlots(*info.collection(), slots);
    }
    slots.push_back({0, nullptr});
    PyType_Spec spec{ordoClass.name().text().data(), 0, 0, Py_TPFLAGS_DEFAULT, slots.data()};
    return makeType(spec, baseOf(ordoClass));
}

/// Sets what a type has besides its slots.
void finish(ordo::OrdoClass& ordoClass, ClassPeer& peer) {
    PyTypeObject* const type = peer.type;
    addMembers(ordoClass, type);
    if (ordoClass.info().collection() != nullptr) {
        finishCollection(*ordoClass.info().collection(), type);
    }
    if (ordoClass.info().isTransaction()) {
        addTransactionMethods(type);
    }
    PyType_Modified(type);
    for (auto const& literal : ordoClass.enumerations()) {
        Ref const value = literalOf(peer, literal->getNumericValue());
        Ref const name = nameToPython(literal->getName().text());
        checked(PyDict_SetItem(type->tp_dict, name.get(), value.get()));
    }
    type->tp_flags |= Py_TPFLAGS_IMMUTABLETYPE;
    PyType_Modified(type);
}

/// Destroys a peer that isn't in use.
struct Discard {
    void operator()(ClassPeer* peer) const noexcept {
        for (auto const& [number, literal] : peer->literals) {
            Py_DECREF(literal);
        }
        Py_XDECREF(peer->type);
        delete peer;
    }
};

void makePeer(ordo::OrdoClass& ordoClass) {
    std::unique_ptr<ClassPeer, Discard> peer(new ClassPeer);
    peer->ordoClass = &ordoClass;
    peer->equals = ordoClass.findMethod(ordo::internName("eq"));
    peer->lessThan = ordoClass.findMethod(ordo::internName("lt"));
    peer->type = typeFor(ordoClass, *peer);
    finish(ordoClass, *peer);
    // A class becomes visible only when it is finished. Finishing it may have run code of scripts and let other threads
    // run, which may have made the class as well: the first one is kept.
    if (ordoClass.peer() == nullptr) {
        enterPeer(*peer);
        static_cast<void>(peer.release());
    }
}

}  // namespace

void setUpClasses(PyObject* module) {
    PyType_Slot metaSlots[] = {
        slot(Py_tp_new, refuseClass),
        slot(Py_tp_getattro, getClassAttribute),
        {Py_tp_doc, const_cast<char*>("The class of script classes.")},
        {0, nullptr},
    };
    PyType_Spec metaSpec{"ordo.Class", 0, 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_IMMUTABLETYPE, metaSlots};
    metaType = reinterpret_cast<PyTypeObject*>(
        Ref(PyType_FromSpecWithBases(&metaSpec, reinterpret_cast<PyObject*>(&PyType_Type))).release());
    PyType_Slot slots[] = {
        {Py_tp_doc, const_cast<char*>("An object of a script class.")},
        slot(Py_tp_dealloc, freeInstance),
        slot(Py_tp_getattro, getAttribute),
        slot(Py_tp_setattro, setAttribute),
        slot(Py_tp_repr, represent),
        slot(Py_nb_bool, isTrue),
        slot(Py_tp_new, makeInstance),
        {Py_tp_methods, instanceMethods},
        {Py_tp_members, instanceMembers},
        {0, nullptr},
    };
    PyType_Spec spec{"ordo.Object", sizeof(Instance), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_IMMUTABLETYPE, slots};
    objectType = makeType(spec, &PyBaseObject_Type);
    setUpObjects(objectType, makePeer);
    checked(PyModule_AddType(module, objectType));
    checked(PyModule_AddType(module, metaType));
}

}  // namespace host
