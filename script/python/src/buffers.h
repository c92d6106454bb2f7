// Conversion of arrays of numbers from the interpreter's buffer protocol, which NumPy's arrays and scalars implement.
#pragma once

#include "python.h"

#include <zx/array.h>

namespace host {

/// An array from a NumPy array or scalar, or from any other object that exports its memory as numbers.
zx::Array arrayFromBuffer(PyObject* object);

}  // namespace host
