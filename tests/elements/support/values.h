// Values of any type, made by reflection.
#pragma once

#include <quay/zero/meta/types.h>
#include <quay/zero/value.h>

namespace records {

/// The n-th value of a type; neighbours differ. Texts, numbers and fields depend on n.
quay::zero::Value sample(quay::zero::meta::Type const& type, unsigned n);
/// The first sample that reads differently from `value`.
quay::zero::Value anotherThan(quay::zero::Value const& value);
/// A value of a different primitive type.
quay::zero::Value wrongValue(quay::zero::meta::Type const& type);

}  // namespace records
