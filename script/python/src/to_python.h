// Values of native code on their way to scripts.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// The interpreter's object for a value; None for nothing.
Ref toPython(ordo::OrdoValue const& value);

/// The same for an array.
Ref arrayToPython(zxArray const* array, int depth = 0);

/// A NumPy array with a copy of the numbers; row vectors have one dimension. Imports NumPy when first called.
Ref numbersToPython(zxArray const* array);

}  // namespace host
