// Transactions as context managers.
#pragma once

#include "python.h"

namespace host {

/// Gives a type whose objects are transactions the methods that a `with` statement calls: a block that ends as it
/// should commits, one that an exception leaves rolls back.
void addTransactionMethods(PyTypeObject* type);

}  // namespace host
