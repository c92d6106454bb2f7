// Values and elements of any type, made by reflection.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/value.h>

#include <memory>
#include <vector>

namespace records {

/// The schema's classes in order of declaration.
std::vector<quay::zero::meta::Class> schemaClasses();

/// The n-th value of a value type; neighbours differ. Texts, numbers and fields count with n.
quay::zero::Value sample(quay::zero::meta::Type const& type, unsigned n);
/// The first sample that reads differently from `value`.
quay::zero::Value anotherThan(quay::zero::Value const& value);
/// A value of another primitive type than that.
quay::zero::Value wrongValue(quay::zero::meta::Type const& type);

/// A builder of the class, or of the first concrete one derived from it.
std::unique_ptr<quay::zero::ModelElement::Builder> builderOf(quay::zero::meta::Type const& type,
                                                             quay::zero::Model const& model);
/// An element of the class, or of the first concrete one derived from it.
quay::zero::ModelElement make(quay::zero::meta::Type const& type, quay::zero::Model const& model);
/// An element that is not of that class.
quay::zero::ModelElement makeStranger(quay::zero::meta::Type const& type, quay::zero::Model const& model);

}  // namespace records
