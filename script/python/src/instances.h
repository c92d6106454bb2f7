// Text forms and comparison of script objects.
#pragma once

#include "python.h"

namespace host {

PyObject* represent(PyObject* self) noexcept;
PyObject* compare(PyObject* left, PyObject* right, int operation) noexcept;

}  // namespace host
