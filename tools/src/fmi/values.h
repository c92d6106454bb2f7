// Conversion of variables' start values, dimensions and types to the forms of the record.
#pragma once

#include <zx/zx.h>

#include <string>
#include <vector>

#include "description.h"

namespace modelref::fmi {

/// The start values as an array in column-major order with the variable's dimensions; a variable of one dimension
/// becomes a 1 by n array. Null without start values.
zx::Array startArray(Variable const& variable, bool isVersion3);

/// The dimensions; one of size 1 for a single value.
std::vector<int> dimensionsOf(Variable const& variable);
/// The number of a built-in data type; -1 if the type isn't one.
int builtInIdOf(Type type) noexcept;
/// The type's name; for an enumeration that of the declared type.
std::string typeNameOf(Variable const& variable);

}  // namespace modelref::fmi
