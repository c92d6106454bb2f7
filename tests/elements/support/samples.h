// Elements of any class of the record, made by reflection.
#pragma once

#include "values.h"

#include <quay/zero/builder.h>

#include <memory>
#include <vector>

namespace records {

/// The schema's classes in order of declaration.
std::vector<quay::zero::meta::Class> schemaClasses();

/// A builder of the class, or of the first concrete one derived from it.
std::unique_ptr<quay::zero::ModelElement::Builder> builderOf(quay::zero::meta::Type const& type,
                                                             quay::zero::Model const& model);
/// An element of the class, or of the first concrete one derived from it.
quay::zero::ModelElement make(quay::zero::meta::Type const& type, quay::zero::Model const& model,
                              boost::uuids::uuid const& id = {});
/// An element that is not of this class.
quay::zero::ModelElement makeStranger(quay::zero::meta::Type const& type, quay::zero::Model const& model);

}  // namespace records
