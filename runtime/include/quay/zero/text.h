// Values as readable text, for messages.
#pragma once

#include <keel/export.h>

#include <boost/uuid/uuid.hpp>
#include <string>
#include <string_view>

namespace quay::zero {

/// Each 8-bit unit becomes one 16-bit unit if the text is ASCII; otherwise the text is read as UTF-8, and what isn't
/// UTF-8 becomes U+FFFD.
QUAY_ZERO_API std::u16string toUtf16(std::string_view text);

QUAY_ZERO_API std::u16string textOf(boost::uuids::uuid const& id);
QUAY_ZERO_API std::u16string textOf(int value);
QUAY_ZERO_API std::u16string textOf(double value);
inline std::u16string textOf(std::u16string const& text) { return text; }
inline std::u16string textOf(std::string const& text) { return toUtf16(text); }

}  // namespace quay::zero
