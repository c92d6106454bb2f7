// The marshalers of the record's value types.
#pragma once

#include <quay/zero/meta/types.h>

#include <array>

namespace ModelRefInfoRepo::mi {

/// The eight enumerations, then the two data types.
std::array<quay::zero::meta::Type, 10> marshaledTypes();

/// Registers a marshaler for each type that has none yet.
void installMarshalers();

}  // namespace ModelRefInfoRepo::mi
