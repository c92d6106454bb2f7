// Reading UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace zx {

/// Gives `text` as UTF-16. What begins as a character and doesn't end as one becomes one U+FFFD up to where
/// it goes wrong, and every other byte that no character has there becomes one too: overlong forms,
/// surrogates and what lies past U+10FFFF are such bytes.
std::u16string fromUtf8(std::string_view text);

}  // namespace zx
