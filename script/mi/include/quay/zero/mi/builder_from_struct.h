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

/// A builder for one element of a struct array. Field names are property names, own or inherited; others, and derived
/// properties, are NoSuchProperty. An owned property takes a struct, one of several a struct array, and each makes an
/// element of the declared class; anything else there, and an abstract class, is InvalidValue. An empty array without
/// content (what a script's "nothing" becomes) leaves its property alone.
ORDO_API std::unique_ptr<ModelElement::Builder> createBuilderFromStruct(zxArray const* array, std::size_t index,
                                                                        Model const& model,
                                                                        meta::Class const& metaClass);
/// A builder for the first element of a struct array. InvalidValue for an empty array.
ORDO_API std::unique_ptr<ModelElement::Builder> createBuilderFromStructFirst(zxArray const* array, Model const& model,
                                                                             meta::Class const& metaClass);
/// An empty builder. InvalidValue for an abstract class.
ORDO_API std::unique_ptr<ModelElement::Builder> createEmptyBuilder(Model const& model, meta::Class const& metaClass);

/// The id that a text gives in its canonical form, in any case; none for anything else.
ORDO_API std::optional<boost::uuids::uuid> extractUuid(zxArray const* array);
ORDO_API std::optional<boost::uuids::uuid> extractUuid(ordo::OrdoValue const& value);

}  // namespace quay::zero::mi::detail
