// How deep values may be nested.
#pragma once

namespace host {

/// Either way: in values on their way to native code and in those on their way to scripts.
inline constexpr int deepest = 200;

}  // namespace host
