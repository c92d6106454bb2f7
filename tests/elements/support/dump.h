// A model as text, made by reflection alone, so that one comparison tells whether it is unchanged, for any classes.
#pragma once

#include <quay/zero/collection.h>
#include <quay/zero/model.h>
#include <quay/zero/value.h>

#include <boost/uuid/uuid.hpp>
#include <functional>
#include <string>

namespace records {

/// "#7" if only the last four bytes are in use, else the id as it is usually written.
std::string show(boost::uuids::uuid const& id);
/// An element by its id: "-" for an empty handle; a dead element has a cross before its id.
std::string nameOf(quay::zero::ModelElement const& element);

/// A value of any type: texts in quotes, other plain values as their serializer writes them, elements by id,
/// collections member by member (a map with its keys, an unordered set by rising id). An empty value without type is
/// "nothing", one with a type "none".
std::string show(quay::zero::Value const& value);
std::string show(quay::zero::AbstractOwnedCollection const& collection);

/// Every property of an element as reflection reads it without resolving, leaving out what is absent and plain zeros.
std::string show(quay::zero::ModelElement const& element);

/// Every element in order of creation: id, class, container and property, what `more` adds, and values.
std::string dumpElements(quay::zero::Model const& model,
                         std::function<std::string(quay::zero::ModelElement::Impl&)> const& more = {});
/// Whether a transaction is open, and how much can be undone and redone.
std::string dumpHistory(quay::zero::Model const& model);
/// The elements and the history.
std::string dump(quay::zero::Model const& model);

}  // namespace records
