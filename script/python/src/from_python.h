// Values of scripts on their way to native code.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// The value that an object stands for: numbers, texts and script objects as they are, everything else as an array.
/// Throws WrongType for objects that stand for no value. The value may borrow from `object`, which must stay.
ordo::OrdoValue fromPython(PyObject* object);

/// A value as an array, for elements of others.
zx::Array arrayFromPython(PyObject* object, int depth);

}  // namespace host
