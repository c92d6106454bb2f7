// Conversion of the system's UTF-16 texts for people and byte streams.
#pragma once

#include <keel/export.h>

#include <string>
#include <string_view>

namespace keel {

/// Gives `text` as UTF-8. A surrogate without its other half becomes U+FFFD, so the result is always well
/// formed.
QUAY_ZERO_API std::string toUtf8(std::u16string_view text);

}  // namespace keel
