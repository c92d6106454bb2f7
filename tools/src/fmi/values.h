// Start values, dimensions and types of variables as the record holds them.
#pragma once

#include <zx/zx.h>

#include <string>
#include <vector>

#include "description.h"

namespace modelref::fmi {

/// The start values as an array in column-major order, of the dimensions of the variable; a variable of one dimension
/// is a row. Null without start values.
zx::Array startArray(Variable const& variable, bool isVersion3);

/// The dimensions: one of size 1 for a single value.
std::vector<int> dimensionsOf(Variable const& variable);
/// The number of a built-in data type, or -1.
int builtInIdOf(Type type) noexcept;
/// The type's name: that of the declared type for enumerations.
std::string typeNameOf(Variable const& variable);

}  // namespace modelref::fmi
