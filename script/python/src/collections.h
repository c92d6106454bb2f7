// Script objects that hold others, with the manners of the interpreter's own collections.
#pragma once

#include "python.h"

#include <ordo/class.h>

#include <vector>

namespace host {

void setUpCollections();

/// Adds the slots that a class of collections has beside those of any script class.
void addCollectionSlots(ordo::OrdoCollection const& collection, std::vector<PyType_Slot>& slots);
/// Adds the methods, and registers the type with the abstract class that it behaves like.
void finishCollection(ordo::OrdoCollection const& collection, PyTypeObject* type);

}  // namespace host
