// The functions by which the Python packages of the host look up packages and load native libraries.
#pragma once

#include "python.h"

namespace host {

void setUpPackages(PyObject* module);

}  // namespace host
