// Conversion between the system's UTF-16 texts and UTF-8.
#pragma once

#include <keel/export.h>

#include <string>
#include <string_view>

namespace keel {

/// Gives `text` as UTF-8. A surrogate without its other half becomes U+FFFD, so the result is always well
/// formed.
QUAY_ZERO_API std::string toUtf8(std::u16string_view text);

/// Gives `text` as UTF-16. What begins as a character and doesn't end as one becomes one U+FFFD up to where it goes
/// wrong, and every other byte that no character has there becomes one too: overlong forms, surrogates and what lies
/// past U+10FFFF are such bytes.
QUAY_ZERO_API std::u16string toUtf16(std::string_view text);

}  // namespace keel
