// Throwing the failures of failure.h with UTF-8 arguments.
#pragma once

#include <ordo/export.h>
#include <ordo/failure.h>

#include <string>
#include <string_view>
#include <vector>

namespace ordo {

/// Throws a failure as `raise` does, with arguments in UTF-8.
[[noreturn]] ORDO_API void raiseWith(std::string_view id, std::vector<std::string> const& arguments);

}  // namespace ordo
