// Extraction of texts for native code.
#pragma once

#include <ordo/export.h>
#include <ordo/factory/encoding.h>
#include <ordo/value.h>

#include <zx/array.h>

#include <string>

namespace ordo::factory {

/// The UTF-16 units of a text array or a text in transit; throws WrongType if it isn't one text.
ORDO_API std::u16string extractString(zxArray const* array);
inline std::u16string extractString(OrdoValue const& value) { return value.toText(); }

}  // namespace ordo::factory
