// The failures of failure.h, and throwing them with arguments of UTF-8.
#pragma once

#include <ordo/export.h>
#include <ordo/failure.h>

#include <string>
#include <string_view>
#include <vector>

namespace ordo {

/// As `raise` does, with UTF-8 arguments.
[[noreturn]] ORDO_API void raiseWith(std::string_view id, std::vector<std::string> const& arguments);

}  // namespace ordo
