// The properties of elements as scripts see them.
#pragma once

#include <ordo/property.h>

#include <quay/zero/meta/types.h>

#include <memory>
#include <string_view>

namespace quay::zero::mi {

/// Whether the property has several values, or several children: its value is a collection.
bool isCollection(meta::Property const& property);

/// The script property of a class's property; what its shape and type make of it is told by one adapter each.
/// `description` lives as long as the process.
std::unique_ptr<ordo::OrdoPropInfo> makeElementProperty(meta::Property const& property, std::string_view description);

}  // namespace quay::zero::mi
