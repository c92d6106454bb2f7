// Transactions as context managers.
#pragma once

#include "python.h"

namespace host {

/// Adds the methods that a `with` statement calls to a type whose objects are transactions: a block that ends normally
/// commits, a block that an exception leaves rolls back.
void addTransactionMethods(PyTypeObject* type);

}  // namespace host
