// Properties and methods of script classes, as descriptors in the dictionaries of their types.
#pragma once

#include "python.h"

#include <ordo/class.h>
#include <ordo/method.h>
#include <ordo/property.h>

namespace host {

/// A property. Reading one takes a look-up in the type, which the interpreter caches, and a call of the adapter.
struct PropertyMember {
    PyObject_HEAD ordo::OrdoPropInfo* info;
    ordo::OrdoClass* ordoClass;
    PyTypeObject* type;
    ordo::ValidityCheck isValid;
    bool isNumber;   // whether the type word is that of a number
    bool isLogical;  // whether the type word is that of truth values
    bool isUuid;     // whether its texts are shown as uuid.UUID
    bool isList;     // whether an empty value is shown as an empty list
};

/// A method, or a constructor.
struct MethodMember {
    PyObject_HEAD vectorcallfunc call;
    ordo::OrdoMethodInfo* info;
    ordo::OrdoClass* ordoClass;
    PyTypeObject* type;
    bool isList;  // whether an empty result is an empty list
};

extern PyTypeObject* propertyType;
extern PyTypeObject* methodType;

void setUpMembers(PyObject* module);

Ref makeProperty(ordo::OrdoPropInfo& info, ordo::OrdoClass& ordoClass, PyTypeObject* type);
Ref makeMethod(ordo::OrdoMethodInfo& info, ordo::OrdoClass& ordoClass, PyTypeObject* type);

/// Reads a property of `self`, which is an instance of the property's class or one derived from it.
PyObject* readProperty(PropertyMember const& property, PyObject* self) noexcept;
/// Writes a property of `self`; a null `value` means deletion, which is refused.
int writeProperty(PropertyMember const& property, PyObject* self, PyObject* value) noexcept;
/// Binds a method to `self`.
PyObject* bindMethod(PyObject* method, PyObject* self) noexcept;

/// Calls a constructor with a type's arguments.
PyObject* construct(ordo::OrdoClass& ordoClass, PyObject* arguments, PyObject* keywords);

}  // namespace host
