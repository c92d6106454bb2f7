// Attribute access of script objects and of their classes.
#pragma once

#include "python.h"

namespace host {

PyObject* getAttribute(PyObject* self, PyObject* name) noexcept;
PyObject* getClassAttribute(PyObject* type, PyObject* name) noexcept;
int setAttribute(PyObject* self, PyObject* name, PyObject* value) noexcept;

}  // namespace host
