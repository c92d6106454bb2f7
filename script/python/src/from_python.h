// Conversion of Python objects to values for native code.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// The value of a Python object: numbers, texts and script objects are passed unchanged, everything else as an array.
/// Throws WrongType for objects that have no value. The result may borrow from `object`, which must outlive it.
ordo::OrdoValue fromPython(PyObject* object);

/// The value of a Python object as an array, for the elements of another array.
zx::Array arrayFromPython(PyObject* object, int depth);

}  // namespace host
