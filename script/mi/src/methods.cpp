#include "methods.h"

#include <ordo/factory/method.h>

#include <memory>
#include <utility>

namespace quay::zero::mi {

namespace {

using ordo::factory::impl::MethodImpl;

void add(ordo::OrdoClass& ordoClass, std::string_view name, unsigned attributes, std::string_view parameters,
         std::vector<std::string> inputs, std::string_view result, void (*run)(ordo::MethodCall& call),
         std::string_view description) {
    auto const thunk = [](MethodImpl::Function function, ordo::MethodCall& call) {
        reinterpret_cast<void (*)(ordo::MethodCall&)>(function)(call);
    };
    auto signature = ordo::OrdoMethodSignature::createMethodSignature(parameters, result, std::move(inputs));
    ordoClass.addMethod(std::make_unique<MethodImpl>(name, ordo::factory::MethodAttributes{attributes},
                                                     std::move(signature), thunk,
                                                     reinterpret_cast<MethodImpl::Function>(run), description));
}

}  // namespace

void addMethod(ordo::OrdoClass& ordoClass, std::string const& fullName, std::string_view name,
               std::string_view parameters, std::vector<std::string> inputs, std::string_view result,
               void (*run)(ordo::MethodCall& call), std::string_view description) {
    inputs.insert(inputs.begin(), fullName);
    add(ordoClass, name, 0, parameters, std::move(inputs), result, run, description);
}

void addStaticMethod(ordo::OrdoClass& ordoClass, std::string_view name, std::string_view parameters,
                     std::vector<std::string> inputs, std::string_view result, void (*run)(ordo::MethodCall& call),
                     std::string_view description) {
    add(ordoClass, name, ordo::staticMethodAttributes, parameters, std::move(inputs), result, run, description);
}

}  // namespace quay::zero::mi
