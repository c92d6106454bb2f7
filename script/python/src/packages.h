// The functions by which the Python packages of the host look up packages and load native libraries.
#pragma once

#include "python.h"

namespace host {

void setUpPackages(PyObject* module);

/// Sets an ImportError and throws unless this is the process's first interpreter: native classes have one Python type
/// each, which belongs to one interpreter.
void requireMainInterpreter();

}  // namespace host
