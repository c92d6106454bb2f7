// Reports that a class or data type doesn't have a property.
#pragma once

#include <quay/zero/meta/property.h>

namespace quay::zero::meta {

/// The property's name; an empty text for an empty handle.
QUAY_ZERO_API std::u16string nameOrNothing(Property const& property);

/// Raises NoSuchProperty with the property's name and the qualified name of the type.
[[noreturn]] QUAY_ZERO_API void reportNoSuchProperty(Property const& property, MetaElement const& type);

}  // namespace quay::zero::meta
