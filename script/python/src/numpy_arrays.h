// Conversion of arrays of numbers to NumPy arrays.
#pragma once

#include "python.h"

#include <zx/array.h>

namespace host {

/// A NumPy array with a copy of the numbers; row vectors have one dimension. Imports NumPy when first called.
Ref numbersToPython(zxArray const* array);

}  // namespace host
