// The expressions of string types.
#pragma once

#include <string_view>

namespace VWTypeSys {

/// Whether the text is "string", or "string(N)" with N from 1 to the greatest int, written without leading zeros: each
/// type has one expression, which is also its name.
bool isStringExpression(std::string_view text) noexcept;

}  // namespace VWTypeSys
