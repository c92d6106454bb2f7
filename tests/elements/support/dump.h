// A model as text, written by reflection alone, so that "as it was before" is one comparison whatever the
// classes.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/value.h>

#include <string>

namespace records {

/// A value of any type: plain values as their serializer writes them, elements by id, collections member by
/// member (a map with its keys, an unordered set by rising id). An empty, untyped value is "nothing", an
/// empty one "none".
std::string show(quay::zero::Value const& value);

/// Every property of an element as reflection reads it without resolving, leaving out what is absent and
/// plain zeros.
std::string show(quay::zero::ModelElement const& element);

/// Every element in order of creation: id, class, container and property, values.
std::string dumpElements(quay::zero::Model const& model);
/// The same, and whether a transaction is open, and how much can be undone and redone.
std::string dump(quay::zero::Model const& model);

}  // namespace records
