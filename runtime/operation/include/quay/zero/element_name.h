// Names of elements, for people.
#pragma once

#include <quay/zero/meta/property.h>

#include <string>

namespace quay::zero {

/// The property by which people tell the elements of a class apart, or an empty handle: the text property
/// `compiledSignalLabel` or `name`, else the first one that ends with "Name" or "Path" or is called "identifier".
/// Costs a walk over the properties of the class.
QUAY_ZERO_API meta::Property namingProperty(meta::Class const& metaClass);

/// The name of the element for people: in a map its key there, elsewhere the value of its naming property; an empty
/// text without either.
QUAY_ZERO_API std::u16string nameOf(ModelElement const& element);

}  // namespace quay::zero
