// Between UTF-16 and texts of bytes, which are UTF-8 as a rule and come back as they were in any case.
#pragma once

#include <ordo/export.h>

#include <string>
#include <string_view>

namespace ordo::factory {

/// UTF-16 of an 8-bit text. Each byte that isn't part of well-formed UTF-8 becomes the unit U+DC00 plus the byte, so
/// that every text comes back as it was.
ORDO_API std::u16string unitsOf(std::string_view bytes);
/// The other way. NotEncodable for a lone surrogate that stands for no byte.
ORDO_API std::string bytesOf(std::u16string_view units);

}  // namespace ordo::factory
