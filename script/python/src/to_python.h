// Conversion of native values to Python objects.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// The Python object for a value; None for "nothing".
Ref toPython(ordo::OrdoValue const& value);

/// The Python object for an array.
Ref arrayToPython(zxArray const* array, int depth = 0);

}  // namespace host
