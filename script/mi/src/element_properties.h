// The properties of elements as scripts read and write them.
#pragma once

#include <ordo/property.h>

#include <quay/zero/meta/types.h>

#include <memory>
#include <string_view>

namespace quay::zero::mi {

/// Whether the property has several values, or several children: its value is a collection.
bool isCollection(meta::Property const& property);

/// The script property for a property of a class. Each combination of shape and type has its adapter. `description`
/// must live as long as the process.
std::unique_ptr<ordo::OrdoPropInfo> makeElementProperty(meta::Property const& property, std::string_view description);

}  // namespace quay::zero::mi
