// Values of native code on their way to scripts.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// The interpreter's object for a value; None for nothing.
Ref toPython(ordo::OrdoValue const& value);

/// The interpreter's object for an array.
Ref arrayToPython(zxArray const* array, int depth = 0);

}  // namespace host
