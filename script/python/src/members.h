// Properties and methods of script classes, as descriptors in the dictionaries of their types.
#pragma once

#include "python.h"

#include <ordo/class.h>
#include <ordo/method.h>
#include <ordo/property.h>

namespace host {

/// A property. Reading one is a look-up in the type, which the interpreter caches, and a call of the adapter.
struct PropertyMember {
    PyObject_HEAD ordo::OrdoPropInfo* info;
    ordo::OrdoClass* ordoClass;
    PyTypeObject* type;
    ordo::ValidityCheck isValid;
    bool isNumber;   // its type word is that of a number
    bool isLogical;  // that of truth values
    bool isUuid;     // texts of it are shown as uuid.UUID
    bool isList;     // an empty one is a list as well
};

/// A method, or a constructor's description.
struct MethodMember {
    PyObject_HEAD vectorcallfunc call;
    ordo::OrdoMethodInfo* info;
    ordo::OrdoClass* ordoClass;
    PyTypeObject* type;
    bool isList;  // an empty result is a list as well
};

extern PyTypeObject* propertyType;
extern PyTypeObject* methodType;

void setUpMembers(PyObject* module);

Ref makeProperty(ordo::OrdoPropInfo& info, ordo::OrdoClass& ordoClass, PyTypeObject* type);
Ref makeMethod(ordo::OrdoMethodInfo& info, ordo::OrdoClass& ordoClass, PyTypeObject* type);

/// Reads a property of `self`, which is an instance of the property's class or one derived from it.
PyObject* readProperty(PropertyMember const& property, PyObject* self) noexcept;
/// Writes one; null `value` deletes, which is refused.
int writeProperty(PropertyMember const& property, PyObject* self, PyObject* value) noexcept;
/// A method as an attribute of `self`.
PyObject* bindMethod(PyObject* method, PyObject* self) noexcept;

/// Calls a constructor with a type's arguments.
PyObject* construct(ordo::OrdoClass& ordoClass, PyObject* arguments, PyObject* keywords);

}  // namespace host
