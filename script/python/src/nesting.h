// The limit for the nesting of values.
#pragma once

namespace host {

/// For values that are converted from Python and for those that are converted to Python.
inline constexpr int deepest = 200;

}  // namespace host
