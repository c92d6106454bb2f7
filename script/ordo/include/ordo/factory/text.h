// Texts as native code wants them.
#pragma once

#include <ordo/export.h>
#include <ordo/value.h>

#include <zx/array.h>

#include <string>
#include <string_view>

namespace ordo::factory {

/// The units of a text array or a text in transit; WrongType if it isn't one text.
ORDO_API std::u16string extractString(zxArray const* array);
inline std::u16string extractString(OrdoValue const& value) { return value.toText(); }

/// UTF-16 of an 8-bit text. Each byte that isn't part of well-formed UTF-8 becomes the unit U+DC00 plus the byte, so
/// that every text comes back as it was.
ORDO_API std::u16string unitsOf(std::string_view bytes);
/// The other way. NotEncodable for a lone surrogate that stands for no byte.
ORDO_API std::string bytesOf(std::u16string_view units);

}  // namespace ordo::factory
