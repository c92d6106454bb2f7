// Script methods that call plain functions.
#pragma once

#include <ordo/class.h>
#include <ordo/method.h>

#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::mi {

/// Adds a method whose first input is an object of the class itself, whose name is `fullName`.
void addMethod(ordo::OrdoClass& ordoClass, std::string const& fullName, std::string_view name,
               std::string_view parameters, std::vector<std::string> inputs, std::string_view result,
               void (*run)(ordo::MethodCall& call), std::string_view description);

/// Adds a static method, which is called on the class instead of an object.
void addStaticMethod(ordo::OrdoClass& ordoClass, std::string_view name, std::string_view parameters,
                     std::vector<std::string> inputs, std::string_view result, void (*run)(ordo::MethodCall& call),
                     std::string_view description);

}  // namespace quay::zero::mi
