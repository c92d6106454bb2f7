// Python instances of script objects, and peers of classes: a peer holds a class's Python type. Module classes.h makes
// the types.
#pragma once

#include "python.h"

#include <ordo/class.h>
#include <ordo/interface.h>

#include <cstdint>
#include <unordered_map>

namespace host {

/// An instance of a script class. It holds its script object, whose peer it is, so that a script object has at most one
/// instance at a time.
struct Instance {
    PyObject_HEAD void* native;
    ordo::OrdoInterface* object;
    PyObject* weakReferences;
};

/// The peer of a class of `ordo`. Lives as long as the process.
struct ClassPeer {
    PyTypeObject* type = nullptr;
    ordo::OrdoClass* ordoClass = nullptr;
    ordo::OrdoMethodInfo* equals = nullptr;    // `eq`
    ordo::OrdoMethodInfo* lessThan = nullptr;  // `lt`
    std::unordered_map<std::int32_t, PyObject*> literals;
};

/// Makes the peer of a class that has none, and enters it unless the class has got one meanwhile.
using PeerMaker = void(ordo::OrdoClass& ordoClass);

/// Sets the base type of all instances, and the function that makes peers.
void setUpObjects(PyTypeObject* base, PeerMaker* maker);
/// Sets a class's peer, whose type must be finished, for the rest of the process.
void enterPeer(ClassPeer& peer);

/// The peer of a class, with its type; made if there is none yet.
ClassPeer& peerOf(ordo::OrdoClass& ordoClass);
/// The class of a type; null for types that aren't script classes.
ordo::OrdoClass* classOf(PyTypeObject* type) noexcept;

/// The one instance of a script object that has a native object; made if there is none.
Ref wrap(ordo::OrdoInterface& object);

bool isInstance(PyObject* object) noexcept;
inline Instance& instance(PyObject* object) noexcept { return *reinterpret_cast<Instance*>(object); }
/// The native object of an instance. Throws InvalidHandle if it can't be used.
void* validNative(PyObject* self);
/// Whether an instance can be used; false if its native object was destroyed.
bool isValid(Instance const& self) noexcept;

/// The value with this number of the enumeration behind `peer`; the same object each time for a literal.
Ref literalOf(ClassPeer& peer, std::int32_t number);
/// The value of an enumeration with this number.
Ref enumerationToPython(ordo::OrdoClass& enumeration, std::int32_t number);
/// The enumeration that an object is a value of; null if it is none.
ordo::OrdoClass* enumerationOf(PyObject* object) noexcept;

}  // namespace host
