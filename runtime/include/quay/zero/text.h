// Values as readable text, for messages.
#pragma once

#include <keel/export.h>
#include <keel/text.h>

#include <boost/uuid/uuid.hpp>
#include <string>

namespace quay::zero {

using keel::toUtf16;

QUAY_ZERO_API std::u16string textOf(boost::uuids::uuid const& id);
QUAY_ZERO_API std::u16string textOf(int value);
QUAY_ZERO_API std::u16string textOf(double value);
inline std::u16string textOf(std::u16string const& text) { return text; }
inline std::u16string textOf(std::string const& text) { return toUtf16(text); }

}  // namespace quay::zero
