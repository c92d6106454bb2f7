// Script objects and their classes as the interpreter knows them: an instance for each object, and for each class a
// peer with its type. How types are made is classes.h's.
#pragma once

#include "python.h"

#include <ordo/class.h>
#include <ordo/interface.h>

#include <cstdint>
#include <unordered_map>

namespace host {

/// An instance of a script class. It holds its script object; the script object knows it as its peer, so that there is
/// one instance at a time for each.
struct Instance {
    PyObject_HEAD void* native;
    ordo::OrdoInterface* object;
    PyObject* weakReferences;
};

/// What a class of `ordo` has as its peer. Lives as long as the process.
struct ClassPeer {
    PyTypeObject* type = nullptr;
    ordo::OrdoClass* ordoClass = nullptr;
    ordo::OrdoMethodInfo* equals = nullptr;    // `eq`
    ordo::OrdoMethodInfo* lessThan = nullptr;  // `lt`
    std::unordered_map<std::int32_t, PyObject*> literals;
};

/// Makes the peer of a class that has none yet, and enters it unless the class has got one meanwhile.
using PeerMaker = void(ordo::OrdoClass& ordoClass);

/// Sets the type that all instances have as their base, and what makes peers.
void setUpObjects(PyTypeObject* base, PeerMaker* maker);
/// Gives a class its peer, whose type is finished, for the rest of the process.
void enterPeer(ClassPeer& peer);

/// The peer of a class, with its type, made now if need be.
ClassPeer& peerOf(ordo::OrdoClass& ordoClass);
/// The class behind a type; null for types that aren't script classes.
ordo::OrdoClass* classOf(PyTypeObject* type) noexcept;

/// The one instance for a script object, which has a native object.
Ref wrap(ordo::OrdoInterface& object);

bool isInstance(PyObject* object) noexcept;
inline Instance& instance(PyObject* object) noexcept { return *reinterpret_cast<Instance*>(object); }
/// The native object behind an instance, checked to be usable.
void* validNative(PyObject* self);
/// Whether an instance can be used; false for a destroyed one.
bool isValid(Instance const& self) noexcept;

/// The value of the enumeration behind `peer` with this number; the same object each time for a literal.
Ref literalOf(ClassPeer& peer, std::int32_t number);
/// The value of an enumeration with this number.
Ref enumerationToPython(ordo::OrdoClass& enumeration, std::int32_t number);
/// The enumeration of which an object is a value, null if it is none.
ordo::OrdoClass* enumerationOf(PyObject* object) noexcept;

}  // namespace host
