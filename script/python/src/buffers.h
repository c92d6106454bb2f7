// Arrays of numbers that come in through the interpreter's buffer protocol, which NumPy's arrays and scalars speak.
#pragma once

#include "python.h"

#include <zx/array.h>

namespace host {

/// A NumPy array or scalar, or any other object that lets its memory be seen as numbers.
zx::Array arrayFromBuffer(PyObject* object);

}  // namespace host
