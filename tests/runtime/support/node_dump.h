// A model of nodes or of meta objects as text, so that one comparison tells whether it is unchanged.
#pragma once

#include "../../elements/support/dump.h"

#include <quay/zero/meta/types.h>

#include <concepts>
#include <string>

namespace nodes {

using records::nameOf;
using records::show;

/// A plain value as in a dump.
template <class T>
requires(!std::convertible_to<T const&, quay::zero::ModelElement>) std::string show(T const& value)
requires requires { quay::zero::meta::StandardTypes::of<T>(); }
{ return show(quay::zero::Value(quay::zero::meta::StandardTypes::of<T>(), value, quay::zero::ValueFlags::One)); }

/// One property of a node, as reflection reads it.
std::string show(quay::zero::ModelElement::Impl const& element, std::size_t index);

struct DumpOptions {
    bool referenceCounts = false;
};

/// Every element in order of creation with id, class, container and property, and values.
std::string dumpElements(quay::zero::Model const& model, DumpOptions options = {});
/// A dump of the elements, whether a transaction is open, and the sizes of the history.
std::string dump(quay::zero::Model const& model, DumpOptions options = {});

}  // namespace nodes
