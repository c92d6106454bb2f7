// Classes of the class-object system as classes of the interpreter's, made when somebody first asks for one, and their
// instances.
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

/// Makes the classes that all others are built on, and puts them into the module.
void setUpClasses(PyObject* module);

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

/// The value of an enumeration with this number; the same object each time for a literal.
Ref enumerationToPython(ordo::OrdoClass& enumeration, std::int32_t number);
/// The enumeration of which an object is a value, null if it is none.
ordo::OrdoClass* enumerationOf(PyObject* object) noexcept;

/// The name among a type's attributes that is nearest to one that isn't there; empty if none is near.
std::string nearestName(PyTypeObject* type, std::string const& name);

// The parts of the base class, each in a file of its own.

PyObject* getAttribute(PyObject* self, PyObject* name) noexcept;
PyObject* getClassAttribute(PyObject* type, PyObject* name) noexcept;
int setAttribute(PyObject* self, PyObject* name, PyObject* value) noexcept;
PyObject* represent(PyObject* self) noexcept;
PyObject* compare(PyObject* left, PyObject* right, int operation) noexcept;

}  // namespace host
