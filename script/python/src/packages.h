// The functions by which the Python side of the host asks for packages and loads native libraries.
#pragma once

#include "python.h"

namespace host {

void setUpPackages(PyObject* module);

}  // namespace host
