// Python types for classes of the class-object system, made when a class is first asked for.
#pragma once

#include "python.h"

namespace host {

/// Makes the base types of all script classes, and adds them to the module.
void setUpClasses(PyObject* module);

}  // namespace host
