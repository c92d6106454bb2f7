#include "objects.h"

#include <ordo/error.h>

#include <memory>

namespace host {
namespace {

PyTypeObject* baseType = nullptr;  // base of all script classes but enumerations
PeerMaker* makePeer = nullptr;
std::unordered_map<PyTypeObject*, ordo::OrdoClass*>* classes = nullptr;

}  // namespace

void setUpObjects(PyTypeObject* base, PeerMaker* maker) {
    classes = std::make_unique<std::unordered_map<PyTypeObject*, ordo::OrdoClass*>>().release();
    baseType = base;
    makePeer = maker;
}

void enterPeer(ClassPeer& peer) {
    classes->emplace(peer.type, peer.ordoClass);
    peer.ordoClass->setPeer(&peer);
}

ClassPeer& peerOf(ordo::OrdoClass& ordoClass) {
    if (ordoClass.peer() == nullptr) {
        makePeer(ordoClass);
    }
    return *static_cast<ClassPeer*>(ordoClass.peer());
}

ordo::OrdoClass* classOf(PyTypeObject* type) noexcept {
    auto const found = classes->find(type);
    return found != classes->end() ? found->second : nullptr;
}

Ref literalOf(ClassPeer& peer, std::int32_t number) {
    auto const known = peer.literals.find(number);
    if (known != peer.literals.end()) {
        return Ref::borrow(known->second);
    }
    Ref const arguments(Py_BuildValue("(i)", number));
    Ref made(PyLong_Type.tp_new(peer.type, arguments.get(), nullptr));
    if (peer.ordoClass->findEnumeration(number) == nullptr) {
        return made;
    }
    // Making the literal may have run code that made it as well: the first one is kept.
    auto const [place, isNew] = peer.literals.try_emplace(number, made.get());
    return isNew ? Ref::borrow(made.release()) : Ref::borrow(place->second);
}

Ref wrap(ordo::OrdoInterface& object) {
    if (void* const peer = object.peer()) {
        return Ref::borrow(static_cast<PyObject*>(peer));
    }
    PyTypeObject* const type = peerOf(object.getClass()).type;
    // Making the class may have run code that made the instance as well.
    if (void* const peer = object.peer()) {
        return Ref::borrow(static_cast<PyObject*>(peer));
    }
    Instance* const self = PyObject_New(Instance, type);
    if (self == nullptr) {
        throw PythonError();
    }
    object.addReference();
    self->native = object.native();
    self->object = &object;
    self->weakReferences = nullptr;
    auto* const result = reinterpret_cast<PyObject*>(self);
    object.setPeer(result);
    return Ref(result);
}

bool isInstance(PyObject* object) noexcept { return PyObject_TypeCheck(object, baseType) != 0; }

bool isValid(Instance const& self) noexcept {
    ordo::ValidityCheck const check = self.object->getClass().validityCheck();
    return self.native != nullptr && (check == nullptr || check(self.native));
}

void* validNative(PyObject* self) {
    if (!isValid(instance(self))) {
        ordo::raiseInvalidHandle();
    }
    return instance(self).native;
}

Ref enumerationToPython(ordo::OrdoClass& enumeration, std::int32_t number) {
    return literalOf(peerOf(enumeration), number);
}

ordo::OrdoClass* enumerationOf(PyObject* object) noexcept {
    return PyLong_Check(object) && !PyLong_CheckExact(object) ? classOf(Py_TYPE(object)) : nullptr;
}

}  // namespace host
