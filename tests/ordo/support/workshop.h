// A small native library behind script classes of every kind: items that are counted and can be destroyed, with
// properties of all types, collections of all kinds, an enumeration, a class of values and a transaction.
#pragma once

#include "workshop_items.h"

namespace workshop {

/// Registers the package `workshop` with its classes.
void registerPackage();

}  // namespace workshop
