// Conversion between the system's UTF-16 texts and UTF-8.
#pragma once

#include <keel/export.h>

#include <string>
#include <string_view>

namespace keel {

/// Returns `text` as UTF-8. A surrogate without its other half becomes U+FFFD, so the result is always well formed.
QUAY_ZERO_API std::string toUtf8(std::u16string_view text);

/// Returns `text` as UTF-16. An incomplete character becomes one U+FFFD, up to the first byte that doesn't fit. Every
/// other byte that can't begin or continue a character becomes one U+FFFD as well, such as those of overlong forms,
/// surrogates and codes above U+10FFFF.
QUAY_ZERO_API std::u16string toUtf16(std::string_view text);

}  // namespace keel
