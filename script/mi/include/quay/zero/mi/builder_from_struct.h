// Builders from structs of scripts, and ids from their texts.
#pragma once

#include <ordo/export.h>
#include <ordo/value.h>

#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>

#include <zx/array.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <memory>
#include <optional>

namespace quay::zero::mi::detail {

/// A builder for one element of a struct array. Field names are names of properties, own or inherited; another name, or
/// that of a derived property, throws NoSuchProperty. For an owned property the field is a struct, or a struct array
/// for several children; an element of the declared class is made of each. Any other value for an owned property, and
/// an abstract class, throws InvalidValue. An empty array without content (what a script's "nothing" becomes) leaves
/// the property unset.
ORDO_API std::unique_ptr<ModelElement::Builder> createBuilderFromStruct(zxArray const* array, std::size_t index,
                                                                        Model const& model,
                                                                        meta::Class const& metaClass);
/// A builder for the first element of a struct array. Throws InvalidValue for an empty array.
ORDO_API std::unique_ptr<ModelElement::Builder> createBuilderFromStructFirst(zxArray const* array, Model const& model,
                                                                             meta::Class const& metaClass);
/// An empty builder. Throws InvalidValue for an abstract class.
ORDO_API std::unique_ptr<ModelElement::Builder> createEmptyBuilder(Model const& model, meta::Class const& metaClass);

/// Parses an id in its canonical form, in upper or lower case; none for any other text or array.
ORDO_API std::optional<boost::uuids::uuid> extractUuid(zxArray const* array);
ORDO_API std::optional<boost::uuids::uuid> extractUuid(ordo::OrdoValue const& value);

}  // namespace quay::zero::mi::detail
