// The interface of Python's own collections for script objects that are collections.
#pragma once

#include "python.h"

#include <ordo/class.h>

#include <vector>

namespace host {

void setUpCollections();

/// Adds the slots that a class of collections has besides those of every script class.
void addCollectionSlots(ordo::OrdoCollection const& collection, std::vector<PyType_Slot>& slots);
/// Adds the methods, and registers the type with the abstract base class whose interface it has.
void finishCollection(ordo::OrdoCollection const& collection, PyTypeObject* type);

}  // namespace host
