// Classes of the class-object system as classes of the interpreter's, made when somebody first asks for one.
#pragma once

#include "python.h"

namespace host {

/// Makes the classes that all others are built on, and puts them into the module.
void setUpClasses(PyObject* module);

}  // namespace host
