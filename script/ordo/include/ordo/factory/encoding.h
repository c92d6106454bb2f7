// Conversion between UTF-16 and 8-bit texts. These are usually UTF-8; any bytes survive a round trip.
#pragma once

#include <ordo/export.h>

#include <string>
#include <string_view>

namespace ordo::factory {

/// Converts an 8-bit text to UTF-16. Each byte that isn't part of well-formed UTF-8 becomes the unit U+DC00 plus the
/// byte, so that every text survives the round trip.
ORDO_API std::u16string unitsOf(std::string_view bytes);
/// Converts UTF-16 to an 8-bit text. Throws NotEncodable for a lone surrogate that stands for no byte.
ORDO_API std::string bytesOf(std::u16string_view units);

}  // namespace ordo::factory
