// The script classes of models and transactions, and of the elements that every schema has.
#pragma once

#include <ordo/package.h>

namespace quay::zero::mi {

/// Model and Transaction.
void addModelClasses(ordo::OrdoPackage& package);
/// ModelElement.
void addElementClass(ordo::OrdoPackage& package);
/// The classes of meta objects.
void addMetaClasses(ordo::OrdoPackage& package);

}  // namespace quay::zero::mi
